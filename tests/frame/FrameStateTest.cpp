// The window as it is built, the states of its commands, and the question before a result is lost.
#include "tests/frame/FrameFixture.h"

#include "Widgets/StaticPicture.h"
#include "Widgets/lsRadioButton.h"

#include <wx/aui/auibook.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/menu.h>
#include <wx/slider.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/toolbar.h>
#include <wx/uiaction.h>

using namespace LS::Tests;

namespace {

class MainWindow : public FrameTest {
protected:
    wxAuiNotebook& Notebook() const
    {
        return dynamic_cast<wxAuiNotebook&>(*m_frame->GetSizer()->GetItem(std::size_t{0})->GetWindow());
    }

    void ExpectState(bool bCreateHDR, bool bSave, bool bSourcePage, bool bResultPage, int nPage) const
    {
        EXPECT_TRUE(IsOn(wxID_NEW));
        EXPECT_TRUE(IsOn(wxID_EXIT));
        EXPECT_EQ(bCreateHDR, IsOn(ID_CREATE_HDR));
        EXPECT_EQ(bSave, IsOn(wxID_SAVE));
        EXPECT_EQ(bSourcePage, Notebook().GetPage(0)->IsEnabled());
        EXPECT_EQ(bResultPage, Notebook().GetPage(1)->IsEnabled());
        EXPECT_EQ(nPage, Notebook().GetSelection());
        EXPECT_EQ(0, Find<wxChoice>(ID_BIT_DEPTH).GetSelection());
        EXPECT_EQ(0, Find<wxSlider>(ID_EXPOSURE).GetValue());
        EXPECT_EQ(22, Find<wxSlider>(ID_GAMMA).GetValue());
        EXPECT_FALSE(Find<wxSlider>(ID_EXPOSURE).IsThisEnabled());
        EXPECT_FALSE(Find<wxSlider>(ID_GAMMA).IsThisEnabled());
    }
};

} // namespace

TEST_F(MainWindow, TheToolBarHasNoRoomForLabels)
{
    constexpr int PICTURE = 26, FRAME = 18; // the theme's, around a button
    EXPECT_LE(m_frame->GetToolBar()->GetSize().y, PICTURE + FRAME);
}

TEST_F(MainWindow, WalksThroughItsThreeStates)
{
    ExpectState(false, false, false, false, 0);
    EXPECT_EQ(5, Grid().GetNumberRows());

    m_frame->AddFiles(Paths(Series(2)));
    Pump();
    ExpectState(true, false, true, false, 0);

    Command(ID_CREATE_HDR);
    ExpectState(true, true, true, true, 1);

    const ExpectedBoxes boxes({SaveQuestion(wxID_NO)});
    m_frame->AddFiles(Paths(Series(2)));
    ExpectState(true, false, true, false, 0);
}

TEST_F(MainWindow, CommandsThatAreOffDoNothing)
{
    const ExpectedBoxes none({});
    wxUIActionSimulator keyboard;
    keyboard.Char('S', wxMOD_CONTROL);
    Pump(20);
    ExpectState(false, false, false, false, 0);
}

TEST_F(MainWindow, TheCurveModeSwitchesItsControls)
{
    auto& list = Find<wxChoice>("choice"); // the first choice of the window is that of the curves
    auto& save = Find<wxCheckBox>("check");
    auto& name = Find<wxTextCtrl>("text");
    const auto expect = [&](bool bExisting) {
        EXPECT_EQ(bExisting, list.IsThisEnabled());
        EXPECT_EQ(!bExisting, save.IsThisEnabled());
        EXPECT_EQ(!bExisting, name.IsThisEnabled());
        EXPECT_TRUE(save.GetValue());
    };
    EXPECT_EQ("Standard", list.GetStringSelection());
    EXPECT_EQ("crvName", name.GetValue());
    expect(true);
    ChooseCurveMode(ID_CALCULATE_CURVE);
    expect(false);
    ChooseCurveMode(ID_EXISTING_CURVE);
    expect(true);
}

TEST_F(MainWindow, TheCurveNameRefusesCharactersOfPaths)
{
    m_frame->AddFiles(Paths(Series(2)));
    ChooseCurveMode(ID_CALCULATE_CURVE);
    auto& name = Find<wxTextCtrl>("text");
    name.SetFocus();
    name.SelectAll();
    Pump();
    wxUIActionSimulator keyboard;
    for (const char cTyped : std::string("a*?\\/:\"<>|b")) {
        keyboard.Text(std::string(1, cTyped).c_str());
        Pump(2);
    }
    EXPECT_EQ("ab", name.GetValue());
}

TEST_F(MainWindow, TheQuestionBeforeAResultIsLost)
{
    struct Case {
        int nAnswer;
        bool bGoesOn;
    };
    m_frame->AddFiles(Paths(Series(2)));
    for (const Case& c : {Case{wxID_CANCEL, false}, Case{wxID_NO, true}}) {
        SCOPED_TRACE(c.nAnswer);
        Command(ID_CREATE_HDR);
        const ExpectedBoxes boxes({SaveQuestion(c.nAnswer)});
        m_frame->AddFiles(Paths(Series(3)));
        EXPECT_EQ(c.bGoesOn ? 3 : 2, Grid().GetNumberRows());
        EXPECT_EQ(!c.bGoesOn, IsOn(wxID_SAVE));
    }
}

TEST_F(MainWindow, ACancelledQuestionKeepsTheWindow)
{
    m_frame->AddFiles(Paths(Series(2)));
    Command(ID_CREATE_HDR);
    {
        const ExpectedBoxes boxes({SaveQuestion(wxID_CANCEL)});
        m_frame->Close();
        Pump();
        EXPECT_FALSE(m_frame->IsBeingDeleted());
        EXPECT_TRUE(m_frame->IsShown());
    }
}

TEST_F(MainWindow, FixedIdsAndNames)
{
    struct Case {
        int nId;
        const char* szName;
    };
    for (const Case& c : {Case{6002, "radioButton"}, Case{6003, "radioButton"}, Case{6004, "choice"},
                          Case{6005, "slider"}, Case{6006, "slider"}, Case{6000, "toolbar"}}) {
        SCOPED_TRACE(c.nId);
        const wxWindow* const window = m_frame->FindWindow(c.nId);
        ASSERT_NE(nullptr, window);
        EXPECT_EQ(c.szName, window->GetName());
    }
    EXPECT_EQ("Main Frame", m_frame->GetName());
    const struct {
        int nId;
        const char *szLabel, *szHelp;
    } items[] = {{wxID_NEW, "&New...\tCtrl+N", "New"},
                 {wxID_SAVE, "&Save\tCtrl+S", "Save"},
                 {wxID_EXIT, "E&xit\tCtrl+Q", "Exit"},
                 {6001, "&Create HDR Image", "Create HDR Image"},
                 {6007, "&Help Topics...\tF1", ""},
                 {wxID_ABOUT, "&About Tolvanic Lumistrand",
                  nullptr}}; // null: the library has words of its own for this id
    for (const auto& item : items) {
        const wxMenuItem* const found = m_frame->GetMenuBar()->FindItem(item.nId);
        ASSERT_NE(nullptr, found) << item.szLabel;
        EXPECT_EQ(item.szLabel, found->GetItemLabel());
        if (item.szHelp) {
            EXPECT_EQ(item.szHelp, found->GetHelp());
        }
    }
}
