// The link under the pointer and under the keys.
#include "Widgets/HyperlinkCtrl.h"

#include "tests/Widgets/WidgetTest.h"
#include "tests/support/Pixels.h"

using namespace LS::Tests;
using namespace LS::Widgets;

namespace {

class HyperlinkCtrl : public WidgetTest {
protected:
    HyperlinkCtrl()
    {
        m_panel->Bind(lsEVT_HYPERLINK, [this](lsHyperlinkEvent&) { ++m_nFollowed; });
    }

    lsHyperlinkCtrl* m_link = new lsHyperlinkCtrl(m_panel, 6700, "JPEG options", {20, 20});
    int m_nFollowed = 0;
};

} // namespace

TEST_F(HyperlinkCtrl, ColoursAndEventsFollowThePointer)
{
    const auto colour = [this] { return m_link->GetForegroundColour(); };
    EXPECT_EQ(wxColour("BLUE"), colour());
    MoveTo(*m_link, {5, 5});
    EXPECT_EQ(wxColour("RED"), colour());
    wxUIActionSimulator().MouseDblClick(); // a press and a double click
    Pump();
    EXPECT_EQ(2, m_nFollowed);
    MoveTo(*m_panel, ASIDE);
    EXPECT_EQ(wxColour("PURPLE"), colour());
}

TEST_F(HyperlinkCtrl, FocusIsSeenAndKeysFollowItToo)
{
    const wxImage before = Screenshot(*m_link);
    m_link->SetFocus();
    Pump(20);
    EXPECT_FALSE(SamePixels(before, Screenshot(*m_link)));
    for (const int nKey : {int(WXK_SPACE), int(WXK_RETURN), int('A')})
        TypeKey(nKey);
    EXPECT_EQ(2, m_nFollowed);
}

TEST_F(HyperlinkCtrl, SizeFollowsTheLabel)
{
    const wxSize first = m_link->GetSize();
    m_link->SetLabel("JPEG options, and a little more");
    EXPECT_GT(m_link->GetSize().x, 2 * first.x);
    m_link->SetLabel("JPEG options");
    EXPECT_EQ(first, m_link->GetSize());
}
