// The splitter under the pointer.
#include "Widgets/SashSplitter.h"

#include "tests/Widgets/WidgetTest.h"

using namespace LS::Tests;
using LS::Widgets::wxSashSplitterWindow;

namespace {

constexpr int MINIMUM = 110;

class SashSplitter : public WidgetTest {
protected:
    static void SetUpTestSuite() { LS::Widgets::WidenSashes(); }

    SashSplitter()
    {
        m_splitter->SetSashGravity(1.0);
        m_splitter->SetMinimumPaneSize(MINIMUM);
    }

    wxSashSplitterWindow* m_splitter =
        new wxSashSplitterWindow(m_panel, wxID_ANY, wxPoint(0, 0), wxSize(600, 400));
    wxPanel* m_first = new wxPanel(m_splitter);
    wxPanel* m_second = new wxPanel(m_splitter);
};

} // namespace

TEST_F(SashSplitter, DragMovesTheSashAndKeepsTheMinimum)
{
    m_splitter->SplitHorizontally(m_first, m_second, -200);
    Pump(20);
    const int nSash = m_splitter->GetSashPosition();
    EXPECT_EQ(8, m_splitter->GetSashSize());
    EXPECT_EQ(128, Screenshot(*m_splitter).GetRed(20, nSash + 7)) << "the sash is grey";
    {
        const HeldButton hand(*m_splitter, {300, nSash + 3});
        MoveTo(*m_splitter, {300, nSash - 37});
        EXPECT_EQ(nSash - 40, m_splitter->GetSashPosition());
        MoveTo(*m_splitter, {300, 5});
    }
    EXPECT_EQ(MINIMUM, m_first->GetSize().y);
}

TEST_F(SashSplitter, HandleCollapsesAndBringsBackTheMinimum)
{
    m_splitter->SplitVertically(m_first, m_second, -200);
    Pump(20);
    const auto click = [this] {
        Click(*m_splitter, {m_splitter->GetSashPosition() + 3, m_splitter->GetClientSize().y / 2});
    };
    click();
    EXPECT_FALSE(m_splitter->IsExpanded());
    EXPECT_EQ(1, m_second->GetSize().x);
    click();
    EXPECT_TRUE(m_splitter->IsExpanded());
    EXPECT_EQ(MINIMUM, m_second->GetSize().x);
}
