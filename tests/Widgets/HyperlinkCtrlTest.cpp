// The link under the pointer and under the keys.
#include "Widgets/HyperlinkCtrl.h"

#include "tests/support/Gui.h"

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>

using namespace LS::Tests;
using namespace LS::Widgets;

namespace {

constexpr int LINK_ID = 6700;
const wxPoint OUTSIDE(250, 150);

class HyperlinkCtrl : public testing::Test {
protected:
    HyperlinkCtrl()
    {
        m_panel->Bind(lsEVT_HYPERLINK, [this](lsHyperlinkEvent& event) {
            EXPECT_EQ(LINK_ID, event.GetId());
            EXPECT_EQ(m_link, event.GetEventObject());
            ++m_nFollowed;
        });
        ShowAndWait(*m_frame);
        MoveTo(*m_panel, OUTSIDE);
    }
    ~HyperlinkCtrl() override { delete m_frame; }

    // How many pixels of the link are clearly of a colour; smoothed edges don't count.
    int Pixels(const wxColour& colour)
    {
        Pump(20);
        const wxImage shown = Screenshot(*m_link);
        int count = 0;
        for (int y = 0; y < shown.GetHeight(); ++y)
            for (int x = 0; x < shown.GetWidth(); ++x)
                count += std::abs(shown.GetRed(x, y) - colour.Red()) < 60 &&
                         std::abs(shown.GetGreen(x, y) - colour.Green()) < 60 &&
                         std::abs(shown.GetBlue(x, y) - colour.Blue()) < 60;
        return count;
    }

    void ExpectColour(const wxColour& colour)
    {
        EXPECT_EQ(colour, m_link->GetForegroundColour());
        EXPECT_GT(Pixels(colour), 20);
    }

    wxFrame* m_frame = new wxFrame(nullptr, wxID_ANY, "link", wxDefaultPosition, {400, 300});
    wxPanel* m_panel = new wxPanel(m_frame);
    lsHyperlinkCtrl* m_link = new lsHyperlinkCtrl(m_panel, LINK_ID, "JPEG options", {20, 20});
    int m_nFollowed = 0;
};

} // namespace

TEST_F(HyperlinkCtrl, ColoursFollowThePointer)
{
    ExpectColour("BLUE");
    MoveTo(*m_link, {5, 5});
    ExpectColour("RED");
    MoveTo(*m_panel, OUTSIDE);
    ExpectColour("BLUE");

    Click(*m_link, {5, 5});
    ExpectColour("PURPLE");
    MoveTo(*m_panel, OUTSIDE);
    ExpectColour("PURPLE");
    MoveTo(*m_link, {5, 5});
    ExpectColour("RED");
    MoveTo(*m_panel, OUTSIDE);
    ExpectColour("PURPLE");
}

TEST_F(HyperlinkCtrl, EachPressSendsOneEvent)
{
    Click(*m_link, {5, 5});
    EXPECT_EQ(1, m_nFollowed);
    Click(*m_link, {5, 5});
    EXPECT_EQ(2, m_nFollowed);
    wxUIActionSimulator().MouseDblClick(); // a press and a double click
    Pump();
    EXPECT_EQ(4, m_nFollowed);
}

TEST_F(HyperlinkCtrl, FocusIsSeenAndKeysFollowItToo)
{
    auto* const other = new wxTextCtrl(m_panel, wxID_ANY, "", {20, 100});
    other->SetFocus();
    const int nWithoutFocus = Pixels("BLUE");
    m_link->SetFocus();
    Pump(20);
    ASSERT_TRUE(m_link->HasFocus());
    EXPECT_GT(Pixels("BLUE"), nWithoutFocus + m_link->GetSize().x / 2) << "a dotted frame";
    wxUIActionSimulator simulator;
    for (const int key : std::initializer_list<int>{WXK_SPACE, WXK_RETURN, 'A'}) {
        simulator.Char(key);
        Pump(20);
    }
    EXPECT_EQ(2, m_nFollowed);
    ExpectColour("PURPLE");
}

TEST_F(HyperlinkCtrl, SizeFollowsTheLabel)
{
    const wxSize first = m_link->GetSize();
    EXPECT_EQ(first, m_link->GetBestSize());
    m_link->SetLabel("JPEG options, and a little more");
    EXPECT_EQ("JPEG options, and a little more", m_link->GetLabel());
    const wxSize longer = m_link->GetSize();
    EXPECT_GT(longer.x, 2 * first.x);
    EXPECT_EQ(longer, m_link->GetBestSize());
    EXPECT_EQ(longer, m_link->GetMinSize());
    m_link->SetLabel("JPEG options");
    EXPECT_EQ(first, m_link->GetSize());
    EXPECT_TRUE(m_link->GetFont().GetUnderlined());
}

TEST_F(HyperlinkCtrl, SettersRepaintWhatIsShown)
{
    const wxColour green(0, 128, 0);
    m_link->SetHoverColour(green);
    m_link->SetVisitedColour(green);
    ExpectColour("BLUE");
    m_link->SetLinkColour("BLACK");
    ExpectColour("BLACK");
    MoveTo(*m_link, {5, 5});
    ExpectColour(green);

    Click(*m_link, {5, 5});
    m_link->SetVisitedColour("RED");
    ExpectColour("RED");
    m_link->SetLinkColour("BLUE");
    ExpectColour("RED");
}
