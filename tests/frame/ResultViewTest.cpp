// The page of the result: when the preview is made anew, and what it then shows.
#include "tests/frame/FrameFixture.h"

#include "Widgets/StaticPicture.h"
#include "frame/ControlRules.h"
#include "tests/support/Screen.h"

#include <wx/choice.h>
#include <wx/slider.h>
#include <wx/uiaction.h>

using namespace LS::Tests;

namespace {

const wxSize SIZE(96, 72);

class ResultView : public FrameTest {
protected:
    ResultView()
    {
        Load(Series(3, SIZE));
        Command(ID_CREATE_HDR);
    }

    wxSlider& Exposure() const { return Find<wxSlider>(ID_EXPOSURE); }
    wxSlider& Gamma() const { return Find<wxSlider>(ID_GAMMA); }

    /// Saves in 32 bits, so that nothing is modified any more.
    void Save()
    {
        const ExpectedBoxes none({}, ChooseFile(m_folder.File("saved.exr"), 0));
        ChooseBitDepth(BIT_DEPTH_32);
        Command(wxID_SAVE);
    }
};

} // namespace

TEST_F(ResultView, BitDepthSwitchesTheSlidersAndNothingElse)
{
    for (const int nDepth : {BIT_DEPTH_32, BIT_DEPTH_8, BIT_DEPTH_8, BIT_DEPTH_32}) {
        ChooseBitDepth(nDepth);
        EXPECT_EQ(nDepth == BIT_DEPTH_8, Exposure().IsEnabled());
        EXPECT_EQ(nDepth == BIT_DEPTH_8, Gamma().IsEnabled());
        EXPECT_TRUE(PreviewShows(SIZE, 0, 2.2F));
    }
    ChooseBitDepth(BIT_DEPTH_8);
    Slide(ID_EXPOSURE, 20);
    ChooseBitDepth(BIT_DEPTH_32);
    EXPECT_EQ(20, Exposure().GetValue());
    EXPECT_TRUE(PreviewShows(SIZE, 2, 2.2F));
}

TEST_F(ResultView, DragsPagesAndNotchesMakeThePreviewAnew)
{
    struct Case {
        wxEventType type;
        bool bRecomputes;
    };
    const Case cases[] = {
        {wxEVT_SCROLL_TOP, false},        {wxEVT_SCROLL_BOTTOM, false},
        {wxEVT_SCROLL_LINEUP, false},     {wxEVT_SCROLL_LINEDOWN, false},
        {wxEVT_SCROLL_PAGEUP, true},      {wxEVT_SCROLL_PAGEDOWN, true},
        {wxEVT_SCROLL_THUMBTRACK, false}, {wxEVT_SCROLL_THUMBRELEASE, true},
        {wxEVT_SCROLL_CHANGED, true}, // a notch of the wheel comes with no other event
    };
    ChooseBitDepth(BIT_DEPTH_8);
    for (const int nId : {ID_EXPOSURE, ID_GAMMA})
        for (const Case& c : cases) {
            SCOPED_TRACE(testing::Message() << nId << ", event " << &c - cases);
            Exposure().SetValue(0);
            Slide(ID_GAMMA, 22);
            Slide(nId, nId == ID_EXPOSURE ? -15 : 30, c.type);
            EXPECT_EQ(c.bRecomputes,
                      PreviewShows(SIZE, ToneValue(Exposure().GetValue()), ToneValue(Gamma().GetValue())));
            EXPECT_EQ(!c.bRecomputes, PreviewShows(SIZE, 0, 2.2F));
        }
}

TEST_F(ResultView, BothSlidersCountWhicheverMoved)
{
    ChooseBitDepth(BIT_DEPTH_8);
    struct Case {
        int nExposure, nGamma;
        float fExposure, fGamma;
    };
    for (const Case& c : {Case{-50, 10, -5, 1}, Case{50, 30, 5, 3}, Case{7, 13, 0.7F, 1.3F}}) {
        SCOPED_TRACE(c.nExposure);
        Exposure().SetValue(c.nExposure);
        Slide(ID_GAMMA, c.nGamma);
        EXPECT_TRUE(PreviewShows(SIZE, c.fExposure, c.fGamma));
    }
}

TEST_F(ResultView, ASliderThatComesBackIsAChangeAllTheSame)
{
    struct Case {
        const char* szWhat;
        wxEventType type;
        bool bAsks;
    };
    for (const Case& c :
         {Case{"arrow key", wxEVT_SCROLL_LINEUP, false}, Case{"release", wxEVT_SCROLL_THUMBRELEASE, true}}) {
        SCOPED_TRACE(c.szWhat);
        Command(ID_CREATE_HDR);
        Save();
        ChooseBitDepth(BIT_DEPTH_8);
        Slide(ID_EXPOSURE, 0, c.type);
        EXPECT_EQ(c.bAsks, AsksToSave());
    }
}

TEST_F(ResultView, ADragCountsAtItsEndAndArrowKeysDoNot)
{
    ChooseBitDepth(BIT_DEPTH_8);
    Pump();
    wxSlider& slider = Exposure();
    const wxSize size = slider.GetClientSize();
    const wxPoint thumb(size.x / 2, size.y / 2);
    wxUIActionSimulator input;
    {
        const HeldButton button(slider, thumb);
        for (const int nStep : {10, 20, 40}) {
            MoveTo(slider, thumb + wxPoint(nStep, 0));
            EXPECT_LT(0, slider.GetValue());
            EXPECT_TRUE(PreviewShows(SIZE, 0, 2.2F)) << "no recompute while the thumb moves";
        }
    }
    const float fExposure = ToneValue(slider.GetValue());
    EXPECT_TRUE(PreviewShows(SIZE, fExposure, 2.2F));

    slider.SetFocus();
    Pump();
    for (const int nKey : {WXK_LEFT, WXK_LEFT, WXK_UP, WXK_HOME}) {
        input.Char(nKey);
        Pump();
    }
    EXPECT_EQ(-50, slider.GetValue());
    EXPECT_TRUE(PreviewShows(SIZE, fExposure, 2.2F));
    input.Char(WXK_PAGEDOWN);
    Pump();
    EXPECT_LT(-50, slider.GetValue());
    EXPECT_TRUE(PreviewShows(SIZE, ToneValue(slider.GetValue()), 2.2F));
}
