// The progress dialog beside a frame that it locks.
#include "Widgets/lsProgressDialog.h"

#include "tests/support/Gui.h"

#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/frame.h>
#include <wx/gauge.h>
#include <wx/stattext.h>
#include <wx/timer.h>
#include <wx/uiaction.h>

#include <string>
#include <vector>

using namespace LS::Tests;
using LS::Widgets::lsProgressDialog;

namespace {

constexpr int ID_SKIP = 32000;
constexpr int JOB = wxPD_CAN_ABORT | wxPD_APP_MODAL | wxPD_AUTO_HIDE | wxPD_SMOOTH;
constexpr int TIMES = wxPD_ELAPSED_TIME | wxPD_ESTIMATED_TIME | wxPD_REMAINING_TIME;

/// All texts from top to bottom, captions included.
std::vector<std::string> Texts(const wxDialog& dialog)
{
    std::vector<std::string> vTexts;
    for (const wxWindow* const pChild : dialog.GetChildren()) {
        if (const auto* const pText = dynamic_cast<const wxStaticText*>(pChild))
            vTexts.push_back(pText->GetLabel().ToStdString());
    }
    return vTexts;
}

using TextList = std::vector<std::string>;

wxGauge* Gauge(const wxDialog& dialog)
{
    for (wxWindow* const pChild : dialog.GetChildren()) {
        if (auto* const pGauge = dynamic_cast<wxGauge*>(pChild))
            return pGauge;
    }
    return nullptr;
}

wxButton* Button(const wxDialog& dialog, int nId)
{
    return dynamic_cast<wxButton*>(dialog.FindWindow(nId));
}

void Press(wxDialog& dialog, int nId)
{
    wxCommandEvent event(wxEVT_BUTTON, nId);
    event.SetEventObject(Button(dialog, nId));
    dialog.GetEventHandler()->ProcessEvent(event);
}

class ProgressDialog : public testing::Test {
protected:
    ProgressDialog()
        : m_frame(new wxFrame(nullptr, wxID_ANY, "Job", wxPoint(50, 50), wxSize(900, 700))),
          m_other(new wxFrame(nullptr, wxID_ANY, "Other", wxPoint(1000, 50), wxSize(100, 100))),
          m_command(new wxButton(m_frame, wxID_ANY, "Command", wxPoint(10, 10))),
          m_commands(*m_frame, wxEVT_BUTTON)
    {
        // Without this the only child would fill the frame, and the dialog would cover it.
        new wxButton(m_frame, wxID_ANY, "Second", wxPoint(10, 100));
        m_other->Show();
        ShowAndWait(*m_frame);
    }
    ~ProgressDialog() override
    {
        m_other->Destroy();
        m_frame->Destroy();
        Pump();
    }

    wxFrame* m_frame;
    wxFrame* m_other;
    wxButton* m_command;
    EventCounter m_commands;
};

} // namespace

TEST_F(ProgressDialog, ShowsValuesAndTexts)
{
    const struct {
        const char* name;
        int nMaximum, nValue;
        const char* szMessage;
        int nRange, nGauge; ///< of the gauge; -1 without one
        TextList texts;
    } cases[] = {
        {"start", 100, 0, "", 100, 0, {"First", ""}},
        {"half way", 100, 45, "", 100, 45, {"First", "45% completed."}},
        {"new message", 100, 45, "Second", 100, 45, {"Second", "45% completed."}},
        {"no gauge", 0, 30, "", -1, -1, {"First", "30% completed."}},
        {"negative maximum", -70000, 30, "", -1, -1, {"First", "30% completed."}},
        {"scaled", 70000, 30001, "", 35000, 15000, {"First", "15000% completed."}},
        {"beyond the maximum", 100, 101, "", 100, 100, {"First", "101% completed."}},
        {"below 0", 100, -5, "", 100, 0, {"First", "-5% completed."}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        lsProgressDialog dialog("Title", "First", c.nMaximum, m_frame, JOB);
        EXPECT_TRUE(dialog.IsShown());
        EXPECT_EQ("Title", dialog.GetTitle());
        EXPECT_TRUE(dialog.Update(c.nValue, c.szMessage));
        const wxGauge* const pGauge = Gauge(dialog);
        EXPECT_EQ(c.nRange, pGauge ? pGauge->GetRange() : -1);
        EXPECT_EQ(c.nGauge, pGauge ? pGauge->GetValue() : -1);
        EXPECT_EQ(c.texts, Texts(dialog));
    }
}

TEST_F(ProgressDialog, IsAsWideAsItsMessageNeeds)
{
    lsProgressDialog narrow("Title", "Short", 100, m_frame, JOB);
    const wxSize size = narrow.GetClientSize();
    EXPECT_EQ(std::max(300, 4 * size.y / 3), size.x);
    const wxString message('x', 100);
    lsProgressDialog wide("Title", message, 100, m_frame, JOB);
    EXPECT_EQ(3 * wide.GetTextExtent(message).x / 2, wide.GetClientSize().x);
}

TEST_F(ProgressDialog, LocksTheOtherWindows)
{
    const struct {
        const char* name;
        int nStyle;
        bool bOtherLocked;
    } cases[] = {
        {"every window", JOB, true},
        {"the parent alone", wxPD_CAN_ABORT | wxPD_AUTO_HIDE, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        {
            lsProgressDialog dialog("Title", "Job", 100, m_frame, c.nStyle);
            EXPECT_FALSE(m_frame->IsEnabled());
            EXPECT_EQ(!c.bOtherLocked, m_other->IsEnabled());
            Pump(20);
            Click(*m_command, wxPoint(5, 5));
            EXPECT_EQ(0, m_commands.Count());

            EXPECT_TRUE(dialog.Update(100));
            EXPECT_FALSE(dialog.IsShown());
            EXPECT_TRUE(m_frame->IsEnabled()) << "locked until the dialog is gone";
            EXPECT_TRUE(m_other->IsEnabled());
        }
        {
            const lsProgressDialog failed("Title", "Job", 100, m_frame, c.nStyle);
        }
        EXPECT_TRUE(m_frame->IsEnabled());
        EXPECT_TRUE(m_other->IsEnabled());
    }
    ShowAndWait(*m_frame); // a window manager hands the focus back in its own time
    Click(*m_command, wxPoint(5, 5));
    EXPECT_EQ(1, m_commands.Count());
}

TEST_F(ProgressDialog, CancelReachesAJobThatDoesNotMove)
{
    lsProgressDialog dialog("Title", "Job", 100, m_frame, JOB | wxPD_CAN_SKIP);
    EXPECT_TRUE(dialog.Update(45));
    Pump(40);
    wxButton& cancel = *Button(dialog, wxID_CANCEL);
    MoveTo(cancel, wxPoint(10, 10));
    wxUIActionSimulator().MouseClick();

    int nUpdates = 0;
    while (dialog.Update(45) && ++nUpdates < 400)
        wxMilliSleep(5);
    EXPECT_LT(nUpdates, 400);
    EXPECT_TRUE(dialog.IsShown());
    EXPECT_FALSE(cancel.IsEnabled());
    EXPECT_FALSE(Button(dialog, ID_SKIP)->IsEnabled());
    EXPECT_FALSE(dialog.Update(46));

    dialog.Resume();
    EXPECT_TRUE(dialog.Update(47));
    EXPECT_TRUE(cancel.IsEnabled());
    EXPECT_TRUE(Button(dialog, ID_SKIP)->IsEnabled());
}

TEST_F(ProgressDialog, UpdateDeliversQueuedEvents)
{
    lsProgressDialog dialog("Title", "Job", 100, m_frame, JOB);
    dialog.Update(45);
    Pump();
    int nCalls = 0;
    dialog.CallAfter([&] { ++nCalls; });
    dialog.Update(45);
    EXPECT_EQ(1, nCalls);
}

TEST_F(ProgressDialog, CloseIsCancelWhereCancelExists)
{
    lsProgressDialog dialog("Title", "Job", 100, m_frame, JOB);
    dialog.Close();
    EXPECT_TRUE(dialog.IsShown());
    EXPECT_FALSE(Button(dialog, wxID_CANCEL)->IsEnabled());
    EXPECT_FALSE(dialog.Update(10));

    lsProgressDialog locked("Title", "Job", 100, m_frame, wxPD_APP_MODAL | wxPD_AUTO_HIDE);
    EXPECT_EQ(nullptr, Button(locked, wxID_CANCEL));
    EXPECT_FALSE(locked.Close());
    EXPECT_TRUE(locked.IsShown());
    EXPECT_TRUE(locked.Update(10));
}

TEST_F(ProgressDialog, ACancelThatIsStillPendingAtTheEndIsLost)
{
    lsProgressDialog dialog("Title", "Job", 100, m_frame, JOB);
    dialog.Update(99);
    Press(dialog, wxID_CANCEL);
    EXPECT_TRUE(dialog.Update(100));
    EXPECT_TRUE(dialog.Update(100));
    EXPECT_TRUE(dialog.Update(50));
    EXPECT_FALSE(dialog.IsShown());
}

TEST_F(ProgressDialog, AJobThatIsDoneAtOnceLeavesNoWindow)
{
    lsProgressDialog dialog("Title", "Job", 100, m_frame, JOB);
    EXPECT_TRUE(dialog.Update(100));
    Pump(60);
    EXPECT_FALSE(dialog.IsShown());
}

TEST_F(ProgressDialog, SkipIsToldOnce)
{
    lsProgressDialog dialog("Title", "Job", 100, m_frame, JOB | wxPD_CAN_SKIP);
    bool bSkip = false;
    EXPECT_TRUE(dialog.Update(1, "", &bSkip));
    EXPECT_FALSE(bSkip);
    Press(dialog, ID_SKIP);
    EXPECT_FALSE(Button(dialog, ID_SKIP)->IsEnabled());
    EXPECT_TRUE(dialog.Update(2)) << "a job that can't be told";
    EXPECT_TRUE(dialog.Update(3, "", &bSkip));
    EXPECT_TRUE(bSkip);
    EXPECT_TRUE(Button(dialog, ID_SKIP)->IsEnabled());
    bSkip = false;
    EXPECT_TRUE(dialog.Update(4, "", &bSkip));
    EXPECT_FALSE(bSkip);
}

TEST_F(ProgressDialog, TimeRows)
{
    lsProgressDialog dialog("Title", "Job", 100, m_frame, JOB | TIMES);
    const auto texts = [&](const char* szPercent, const std::string& sElapsed, const std::string& sEstimated,
                           const std::string& sRemaining) {
        return TextList{"Job",
                        szPercent,
                        sElapsed.empty() ? "" : "Elapsed time : ",
                        sElapsed,
                        "Estimated time : ",
                        sEstimated,
                        "Remaining time : ",
                        sRemaining};
    };
    EXPECT_EQ(texts("", "0:00:00", "unknown", "unknown"), Texts(dialog));
    EXPECT_TRUE(dialog.Pulse());
    EXPECT_EQ("Unknown", Texts(dialog)[5]);
    EXPECT_EQ("Unknown", Texts(dialog)[7]);

    wxMilliSleep(1050);
    dialog.Update(50);
    const std::string sElapsed = Texts(dialog)[3];
    if (sElapsed == "0:00:01")
        EXPECT_EQ(texts("50% completed.", sElapsed, "0:00:02", "0:00:01"), Texts(dialog));
    else // a slow machine
        EXPECT_EQ(texts("50% completed.", "0:00:02", "0:00:04", "0:00:02"), Texts(dialog));
}

TEST_F(ProgressDialog, PulseKeepsTheValueForTheNextUpdate)
{
    lsProgressDialog dialog("Title", "Job", 100, m_frame, JOB);
    dialog.Update(30);
    EXPECT_TRUE(dialog.Pulse("Counting"));
    EXPECT_EQ((TextList{"Counting", "30% completed."}), Texts(dialog));
    EXPECT_TRUE(dialog.Update(30));
    EXPECT_EQ(30, Gauge(dialog)->GetValue());
    Press(dialog, wxID_CANCEL);
    EXPECT_FALSE(dialog.Pulse());
}

TEST_F(ProgressDialog, StaysUntilClosedWithoutAutoHide)
{
    const int nStyle = wxPD_CAN_ABORT | wxPD_CAN_SKIP | wxPD_APP_MODAL;
    lsProgressDialog dialog("Title", "Job", 100, m_frame, nStyle);
    TextList shown;
    bool bLocked = false;
    wxTimer closing;
    closing.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
        shown = Texts(dialog);
        shown.push_back(Button(dialog, wxID_CANCEL)->GetLabel().ToStdString());
        bLocked = !m_frame->IsEnabled() && !Button(dialog, ID_SKIP)->IsEnabled() && dialog.IsModal();
        Press(dialog, wxID_CANCEL);
    });
    closing.StartOnce(300);
    EXPECT_TRUE(dialog.Update(100));
    EXPECT_EQ((TextList{"Done.", "100% completed.", "Close"}), shown);
    EXPECT_TRUE(bLocked);
    EXPECT_FALSE(dialog.IsShown());
    EXPECT_TRUE(m_frame->IsEnabled());
    EXPECT_TRUE(dialog.Update(100)) << "would run modally again";
}

TEST_F(ProgressDialog, CanBeClosedAtTheEndWithoutACancelButton)
{
    lsProgressDialog dialog("Title", "Job", 100, m_frame, wxPD_APP_MODAL);
    TextList shown;
    wxTimer closing;
    closing.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
        shown = Texts(dialog);
        dialog.Close();
    });
    closing.StartOnce(300);
    EXPECT_TRUE(dialog.Update(100, "Saved"));
    EXPECT_EQ((TextList{"Saved", "100% completed."}), shown);
    EXPECT_FALSE(dialog.IsShown());
}
