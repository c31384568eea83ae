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

using namespace LS::Tests;
using testing::ElementsAre;

namespace {

class Keyboard : public FrameTest {
protected:
    static void Press(int nKey, int nModifiers = wxMOD_NONE)
    {
        wxUIActionSimulator().Char(nKey, nModifiers);
        Pump();
    }

    /// The ids of the windows that get the focus on a walk with Tab, up to where it began. The toolkit gives
    /// it to the button inside a choice, which the library doesn't know: that one has the id CHOICE.
    static constexpr int CHOICE = 0;
    std::vector<int> Round(wxWindow& first) const
    {
        constexpr std::size_t LONGEST = 16;
        first.SetFocus();
        Pump();
        std::vector<int> ids;
        do {
            const wxWindow* const focus = wxWindow::FindFocus();
            ids.push_back(focus ? focus->GetId() : CHOICE);
            Press(WXK_TAB);
        } while (wxWindow::FindFocus() != &first && ids.size() < LONGEST);
        return ids;
    }
};

constexpr int TABS = 5380; // the tabs of the notebook: their keys are the arrows

} // namespace

TEST_F(Keyboard, TabReachesEveryControlOfThePages)
{
    Load(Series(3));
    Grid().SelectRow(1, false);
    Pump();
    EXPECT_THAT(Round(Grid()), ElementsAre(Grid().GetId(), ID_EXISTING_CURVE, CHOICE, TABS, wxID_ADD,
                                           wxID_REPLACE, wxID_UP, wxID_DOWN));
    EXPECT_EQ((std::vector{1}), SelectedRows(Grid())) << "the buttons work on it";
    Press(WXK_TAB, wxMOD_SHIFT);
    EXPECT_EQ(wxID_DOWN, wxWindow::FindFocus()->GetId());

    ChooseCurveMode(ID_CALCULATE_CURVE);
    Find<wxCheckBox>("check").SetValue(false);
    EXPECT_THAT(Round(Grid()),
                ElementsAre(Grid().GetId(), ID_CALCULATE_CURVE, Find<wxCheckBox>("check").GetId(),
                            Find<wxTextCtrl>("text").GetId(), TABS, wxID_ADD, wxID_REPLACE, wxID_UP,
                            wxID_DOWN));

    Command(ID_CREATE_HDR);
    ChooseBitDepth(BIT_DEPTH_8);
    EXPECT_THAT(Round(Find<wxSlider>(ID_EXPOSURE)), ElementsAre(ID_EXPOSURE, ID_GAMMA, TABS, CHOICE));
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
    EXPECT_FALSE(Grid().IsShownOnScreen());
    m_frame->FindWindow(TABS)->SetFocus();
    Pump();
    Press(WXK_LEFT);
    EXPECT_TRUE(Grid().IsShownOnScreen());
    m_frame->FindWindow(TABS)->SetFocus();
    Pump();
    Press(WXK_RIGHT);
    EXPECT_FALSE(Grid().IsShownOnScreen());
}

TEST_F(Keyboard, CommandsHaveKeys)
{
    int nAsked = 0;
    {
        const ModalAnswer choose(ChooseFile(Series(1)[0], 0));
        Press('N', wxMOD_CONTROL);
    }
    EXPECT_EQ(1, Grid().GetNumberRows());
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
