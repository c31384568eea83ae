// The window without a mouse: what Tab reaches, what keys press, and the way through the menus.
#include "tests/frame/FrameFixture.h"

#include "Widgets/lsRadioButton.h"
#include "frame/ControlRules.h"
#include "frame/SourceGrid.h"

#include <gmock/gmock.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/radiobut.h>
#include <wx/slider.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>

#include <set>

using namespace LS::Tests;

namespace {

class Keyboard : public FrameTest {
protected:
    static void Press(int nKey, int nModifiers = wxMOD_NONE)
    {
        wxUIActionSimulator().Char(nKey, nModifiers);
        Pump();
    }

    /// The windows that have the focus on a walk with Tab, for longer than one round.
    static std::set<const wxWindow*> WalkFrom(wxWindow& first)
    {
        constexpr int STEPS = 16;
        first.SetFocus();
        Pump();
        std::set<const wxWindow*> reached;
        for (int i = 0; i < STEPS; ++i) {
            for (const wxWindow* window = wxWindow::FindFocus(); window; window = window->GetParent())
                reached.insert(window); // the grid's focus is that of a part of it
            Press(WXK_TAB);
        }
        return reached;
    }
};

} // namespace

TEST_F(Keyboard, TabReachesEveryControlOfThePages)
{
    Load(Series(3));
    Grid().SelectRow(1, false);
    Pump();
    std::vector<const wxWindow*> list{&Grid()};
    for (const int nId : {wxID_ADD, wxID_REPLACE, wxID_UP, wxID_DOWN})
        list.push_back(&Find<LS::Widgets::lsRadioButton>(nId));

    auto existing = list;
    existing.insert(existing.end(), {&Find<wxRadioButton>(ID_EXISTING_CURVE), &Find<wxChoice>("choice")});
    EXPECT_THAT(WalkFrom(Grid()), testing::IsSupersetOf(existing));

    ChooseCurveMode(ID_CALCULATE_CURVE);
    auto calculate = list;
    calculate.insert(calculate.end(), {&Find<wxRadioButton>(ID_CALCULATE_CURVE),
                                       &Find<wxCheckBox>("check"), &Find<wxTextCtrl>("text")});
    EXPECT_THAT(WalkFrom(Grid()), testing::IsSupersetOf(calculate));

    Command(ID_CREATE_HDR);
    ChooseBitDepth(BIT_DEPTH_8);
    const std::vector<const wxWindow*> result{&Find<wxChoice>(ID_BIT_DEPTH), &Find<wxSlider>(ID_EXPOSURE),
                                              &Find<wxSlider>(ID_GAMMA)};
    EXPECT_THAT(WalkFrom(Find<wxChoice>(ID_BIT_DEPTH)), testing::IsSupersetOf(result));
}

TEST_F(Keyboard, SpaceAndEnterPressTheListButtons)
{
    Load(Series(4));
    Grid().SelectRow(1, false);
    Pump();
    const std::vector<std::string> vsPaths = Column(COL_PATH);
    Find<LS::Widgets::lsRadioButton>(wxID_DOWN).SetFocus();
    Pump();
    Press(WXK_SPACE);
    EXPECT_EQ(vsPaths[1], Column(COL_PATH)[2]);
    Press(WXK_RETURN);
    EXPECT_EQ(vsPaths[1], Column(COL_PATH)[3]);
    EXPECT_EQ((std::vector{3}), SelectedRows(Grid()));
    Find<LS::Widgets::lsRadioButton>(wxID_REPLACE).SetFocus();
    Pump();
    Press(WXK_SPACE);
    EXPECT_EQ(3, Grid().GetNumberRows());
}

TEST_F(Keyboard, RowsAreSelectedWithKeys)
{
    Load(Series(4));
    Grid().SetFocus();
    Grid().SetGridCursor(0, COL_PATH);
    Press(WXK_DOWN);
    Press(WXK_DOWN, wxMOD_SHIFT);
    EXPECT_EQ((std::vector{1, 2}), SelectedRows(Grid()));
}

TEST_F(Keyboard, PagesChangeWithKeys)
{
    Load(Series(2));
    Command(ID_CREATE_HDR);
    Find<wxChoice>(ID_BIT_DEPTH).SetFocus();
    Pump();
    EXPECT_FALSE(Grid().IsShownOnScreen());
    Press(WXK_TAB, wxMOD_CONTROL);
    EXPECT_TRUE(Grid().IsShownOnScreen());
    Press(WXK_TAB, wxMOD_CONTROL);
    EXPECT_FALSE(Grid().IsShownOnScreen());
}

TEST_F(Keyboard, CommandsHaveKeys)
{
    int nAsked = 0;
    ChooseImages(Series(2));
    Press('N', wxMOD_CONTROL);
    EXPECT_EQ(2, Grid().GetNumberRows());
    Press('E', wxMOD_ALT); // the menu
    Press('C');
    Pump(40);
    EXPECT_TRUE(IsOn(wxID_SAVE));
    const ModalAnswer dialogs([&nAsked](wxDialog&) {
        ++nAsked;
        return wxID_CANCEL;
    });
    Press('S', wxMOD_CONTROL);
    EXPECT_EQ(1, nAsked) << "the question where to save";
    Press('Q', wxMOD_CONTROL);
    EXPECT_EQ(2, nAsked) << "the question whether to save";
    EXPECT_TRUE(m_frame->IsShown());
}
