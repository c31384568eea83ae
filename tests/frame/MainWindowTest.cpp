// The window's states: which commands and controls are on, and what the preview shows.
#include "tests/frame/FrameFixture.h"

#include "frame/ControlRules.h"
#include "tests/support/Pixels.h"

#include <wx/choice.h>
#include <wx/slider.h>
#include <wx/uiaction.h>

using namespace LS::Tests;

namespace {

class MainWindow : public FrameTest {
protected:
    void ExpectState(bool bCreateHDR, bool bSave) const
    {
        EXPECT_EQ(bCreateHDR, IsOn(ID_CREATE_HDR));
        EXPECT_EQ(bCreateHDR, Grid().IsEnabled());
        EXPECT_EQ(bSave, IsOn(wxID_SAVE));
        EXPECT_EQ(bSave, Preview().IsShownOnScreen());
        EXPECT_EQ(BIT_DEPTH_32, Find<wxChoice>(ID_BIT_DEPTH).GetSelection());
        EXPECT_EQ(0, Find<wxSlider>(ID_EXPOSURE).GetValue());
        EXPECT_EQ(22, Find<wxSlider>(ID_GAMMA).GetValue());
        ExpectSliders(false);
    }

    void ExpectSliders(bool bOn) const
    {
        EXPECT_EQ(bOn, Find<wxSlider>(ID_EXPOSURE).IsThisEnabled());
        EXPECT_EQ(bOn, Find<wxSlider>(ID_GAMMA).IsThisEnabled());
    }
};

} // namespace

TEST_F(MainWindow, WalksThroughItsStates)
{
    const wxSize size(96, 72);
    ExpectState(false, false);
    wxUIActionSimulator().Char('S', wxMOD_CONTROL); // is off, and opens nothing
    Load(Series(size));
    ExpectState(true, false);
    Command(ID_CREATE_HDR);
    ExpectState(true, true);
    EXPECT_TRUE(PreviewShows(size, 0, 2.2F));

    ChooseBitDepth(BIT_DEPTH_8);
    ExpectSliders(true);
    Slide(ID_EXPOSURE, 20);
    Slide(ID_GAMMA, 13);
    ChooseBitDepth(BIT_DEPTH_32);
    ExpectSliders(false);
    EXPECT_TRUE(PreviewShows(size, 2, 1.3F));
    Command(ID_CREATE_HDR);
    ExpectState(true, true);
    EXPECT_TRUE(PreviewShows(size, 0, 2.2F));
}

TEST_F(MainWindow, ButtonsAndThumbnailFollowTheSelectionOfTheList)
{
    Load(Series());
    const auto buttonsThatAreOn = [this] {
        std::string sOn;
        for (const auto& [nId, sName] : {std::pair(wxID_ADD, "add "), std::pair(wxID_REPLACE, "remove "),
                                         std::pair(wxID_UP, "up "), std::pair(wxID_DOWN, "down ")})
            sOn += Find<wxWindow>(nId).IsEnabled() ? sName : "";
        return sOn;
    };
    const std::pair<std::vector<int>, const char*> cases[] = {{{0}, "add remove down "},
                                                              {{1}, "add remove up down "},
                                                              {{1, 2}, "add remove up "},
                                                              {{0, 2}, "add remove "}};
    for (const auto& [rows, szOn] : cases) {
        Grid().SelectBlock(rows.front(), 0, rows.back(), 0);
        Pump(2);
        EXPECT_EQ(szOn, buttonsThatAreOn());
    }
    const auto thumbnail = [this] { return Screenshot(Find<wxWindow>("staticPicture")); };
    Select({0});
    Pump(20);
    const wxImage first = thumbnail();
    Select({2});
    Pump(20);
    EXPECT_FALSE(SamePixels(first, thumbnail())) << "it follows as well";
    Select({0, 1, 2});
    Press(wxID_REPLACE);
    EXPECT_EQ("add ", buttonsThatAreOn());
    Command(ID_CREATE_HDR); // of nothing
    EXPECT_FALSE(IsOn(wxID_SAVE));
}
