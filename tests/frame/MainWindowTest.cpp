// The window's states: which commands and controls are on, and what the preview shows.
#include "tests/frame/FrameFixture.h"

#include "frame/ControlRules.h"

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

TEST_F(MainWindow, ButtonsOfTheListFollowItsSelection)
{
    const struct {
        int nFirst, nLast; ///< selected row
        bool bUp, bDown;
    } cases[] = {{0, 0, false, true}, {1, 1, true, true}, {1, 2, true, false}, {0, 2, false, false}};
    Load(Series());
    const auto expect = [this](bool bRemove, bool bUp, bool bDown) {
        EXPECT_TRUE(Find<wxWindow>(wxID_ADD).IsEnabled());
        EXPECT_EQ(bRemove, Find<wxWindow>(wxID_REPLACE).IsEnabled());
        EXPECT_EQ(bUp, Find<wxWindow>(wxID_UP).IsEnabled());
        EXPECT_EQ(bDown, Find<wxWindow>(wxID_DOWN).IsEnabled());
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.nFirst << " to " << c.nLast);
        Grid().SelectBlock(c.nFirst, 0, c.nLast, 0);
        Pump(2);
        expect(true, c.bUp, c.bDown);
    }
    Press(wxID_REPLACE);
    expect(false, false, false);
    Command(ID_CREATE_HDR); // of nothing
    EXPECT_FALSE(IsOn(wxID_SAVE));
}
