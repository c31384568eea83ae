// The window without a mouse: what Tab reaches, what keys press, and the way through the menus.
#include "tests/frame/FrameFixture.h"

#include "Widgets/StaticPicture.h"
#include "Widgets/lsRadioButton.h"
#include "frame/ControlRules.h"
#include "frame/SourceGrid.h"
#include "tests/support/Screen.h"

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
            ids.push_back(FocusId());
            Press(WXK_TAB);
        } while (FocusId() != first.GetId() && ids.size() < LONGEST);
        return ids;
    }

    int FocusId() const
    {
        wxWindow* const focus = wxWindow::FindFocus();
        if (!focus)
            return CHOICE;
        return Grid().IsDescendant(focus) ? Grid().GetId() : focus->GetId();
    }

    /// The thumbnail on show after a click on a row.
    wxImage ThumbnailOf(int nRow) const
    {
        Grid().SelectRow(nRow, false);
        Pump(3);
        return Screenshot(Thumbnail());
    }

    std::string Ticks() const
    {
        std::string sTicks;
        for (const std::string& sText : Column(COL_ENABLED))
            sTicks += sText == "1" ? 'x' : '-';
        return sTicks;
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
    EXPECT_EQ(wxID_DOWN, FocusId());

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

TEST_F(Keyboard, TheListWorksAsListsDo)
{
    Load(Series(4));
    Grid().SetFocus();
    Pump();
    struct Case {
        const char* szWhat;
        int nKey, nModifiers;
        std::vector<int> selected;
        const char* szTicks;
    };
    const Case cases[] = {
        {"down", WXK_DOWN, 0, {1}, "xxxx"},
        {"to another column", WXK_RIGHT, 0, {1}, "xxxx"},
        {"a path has no editor", WXK_RETURN, 0, {1}, "xxxx"},
        {"on a number", WXK_RIGHT, 0, {1}, "xxxx"},
        {"a block down", WXK_DOWN, wxMOD_SHIFT, {1, 2}, "xxxx"},
        {"further", WXK_DOWN, wxMOD_SHIFT, {1, 2, 3}, "xxxx"},
        {"not beyond the end", WXK_DOWN, wxMOD_SHIFT, {1, 2, 3}, "xxxx"},
        {"back", WXK_UP, wxMOD_SHIFT, {1, 2}, "xxxx"},
        {"all off", WXK_SPACE, 0, {1, 2}, "x--x"},
        {"the cursor goes on", WXK_UP, 0, {1}, "x--x"},
        {"one on", WXK_SPACE, 0, {1}, "xx-x"},
        {"first", WXK_HOME, 0, {0}, "xx-x"},
        {"not beyond the beginning", WXK_UP, 0, {0}, "xx-x"},
        {"all", 'A', wxMOD_CONTROL, {0, 1, 2, 3}, "xx-x"},
        {"all on", WXK_SPACE, 0, {0, 1, 2, 3}, "xxxx"},
        {"last", WXK_END, 0, {3}, "xxxx"},
        {"a page", WXK_PAGEUP, 0, {0}, "xxxx"},
        {"a block to the end", WXK_END, wxMOD_SHIFT, {0, 1, 2, 3}, "xxxx"},
        {"down again", WXK_DOWN, 0, {3}, "xxxx"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szWhat);
        Press(c.nKey, c.nModifiers);
        EXPECT_EQ(c.selected, SelectedRows(Grid()));
        EXPECT_EQ(c.szTicks, Ticks());
        EXPECT_FALSE(Grid().IsCellEditControlShown());
    }

    const std::vector<std::string> vsPaths = Column(COL_PATH);
    Press(WXK_UP);
    const wxImage shown = Screenshot(Thumbnail());
    EXPECT_TRUE(SamePixels(ThumbnailOf(2), shown));
    Press(WXK_DELETE);
    EXPECT_THAT(Column(COL_PATH), ElementsAre(vsPaths[0], vsPaths[1], vsPaths[3]));
    EXPECT_EQ((std::vector{0}), SelectedRows(Grid()));
    Press(WXK_DOWN);
    EXPECT_EQ((std::vector{1}), SelectedRows(Grid())) << "from the row that is selected now";
    Press('A', wxMOD_CONTROL);
    Press(WXK_DELETE);
    EXPECT_EQ(0, Grid().GetNumberRows());
    Press(WXK_DOWN); // there is no row to go to
}

TEST_F(Keyboard, NumbersAreTypedDownAColumn)
{
    Load(Series(6));
    Click(*Grid().GetGridWindow(), Grid().CellToRect(3, COL_APERTURE).GetPosition() + wxPoint(20, 8));
    for (const char* szText : {"16", "x", "1/2", ""}) { // of the two kinds of rows
        wxUIActionSimulator().Text(szText);
        Press(WXK_RETURN);
    }
    EXPECT_TRUE(Grid().IsCellEditControlShown()) << "Enter opens the editor where nothing was typed";
    Press(WXK_ESCAPE);
    EXPECT_EQ("16.0000", Grid().GetCellValue(3, COL_APERTURE));
    EXPECT_EQ("8.000000", Grid().GetCellValue(4, COL_APERTURE)) << "no number";
    EXPECT_EQ("1/2", Grid().GetCellValue(5, COL_APERTURE)) << "as it was typed";
    EXPECT_EQ((std::vector{5}), SelectedRows(Grid()));
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
