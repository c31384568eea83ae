// The window without a mouse: what Tab reaches, what keys press, and the way through the menus.
#include "tests/frame/FrameFixture.h"

#include "frame/ControlRules.h"
#include "frame/SourceGrid.h"

#include <gmock/gmock.h>
#include <wx/slider.h>
#include <wx/uiaction.h>

using namespace LS::Tests;
using testing::ElementsAre;

namespace {

class Keyboard : public FrameTest {
protected:
    static void PressKey(int nKey, int nModifiers = wxMOD_NONE)
    {
        wxUIActionSimulator().Char(nKey, nModifiers);
        Pump();
    }

    static void Focus(wxWindow& window)
    {
        window.SetFocus();
        Pump();
    }

    /// The ids of the windows that get the focus on a walk with Tab, up to where it began. The toolkit gives
    /// it to the button inside a choice, which the library doesn't know: that one has the id CHOICE.
    static constexpr int CHOICE = 0;
    std::vector<int> Round(wxWindow& first) const
    {
        constexpr std::size_t LONGEST = 16;
        Focus(first);
        std::vector<int> ids;
        do {
            ids.push_back(FocusId());
            PressKey(WXK_TAB);
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
};

constexpr int TABS = 5380; // the tabs of the notebook: their keys are the arrows

} // namespace

TEST_F(Keyboard, TabReachesEveryControlOfThePages)
{
    Load(Series());
    Select({1});
    EXPECT_THAT(Round(Grid()), ElementsAre(Grid().GetId(), ID_EXISTING_CURVE, CHOICE, TABS, wxID_ADD,
                                           wxID_REPLACE, wxID_UP, wxID_DOWN));
    EXPECT_EQ((std::vector{1}), SelectedRows(Grid())) << "the buttons work on it";
    PressKey(WXK_TAB, wxMOD_SHIFT);
    EXPECT_EQ(wxID_DOWN, FocusId());

    Command(ID_CREATE_HDR);
    ChooseBitDepth(BIT_DEPTH_8);
    EXPECT_THAT(Round(Find<wxSlider>(ID_EXPOSURE)), ElementsAre(ID_EXPOSURE, ID_GAMMA, TABS, CHOICE));
    Focus(*m_frame->FindWindow(TABS));
    PressKey(WXK_LEFT);
    EXPECT_FALSE(Preview().IsShownOnScreen());
}

TEST_F(Keyboard, TheListWorksAsListsDo)
{
    Load(Series());
    Focus(Grid());
    struct Case {
        const char* szWhat;
        int nKey, nModifiers;
        std::vector<int> selected;
        const char* szTicks;
    };
    const Case cases[] = {
        {"down", WXK_DOWN, 0, {1}, "xxx"},
        {"to another column", WXK_RIGHT, 0, {1}, "xxx"},
        {"a path has no editor", WXK_RETURN, 0, {1}, "xxx"},
        {"a block down", WXK_DOWN, wxMOD_SHIFT, {1, 2}, "xxx"},
        {"all off", WXK_SPACE, 0, {1, 2}, "x--"},
        {"back", WXK_UP, wxMOD_SHIFT, {1}, "x--"},
        {"first", WXK_HOME, 0, {0}, "x--"},
        {"all", 'A', wxMOD_CONTROL, {0, 1, 2}, "x--"},
        {"all on", WXK_SPACE, 0, {0, 1, 2}, "xxx"},
        {"last", WXK_END, 0, {2}, "xxx"},
        {"the last one goes", WXK_DELETE, 0, {0}, "xx"},
        {"on from the row that is selected now", WXK_DOWN, 0, {1}, "xx"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szWhat);
        PressKey(c.nKey, c.nModifiers);
        EXPECT_EQ(c.selected, SelectedRows(Grid()));
        std::string sTicks;
        for (int nRow = 0; nRow < Grid().GetNumberRows(); ++nRow)
            sTicks += Grid().GetCellValue(nRow, COL_ENABLED) == "1" ? 'x' : '-';
        EXPECT_EQ(c.szTicks, sTicks);
        EXPECT_FALSE(Grid().IsCellEditControlShown());
    }
}
