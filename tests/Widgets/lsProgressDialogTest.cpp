// The progress dialog beside a frame that it locks, and its times.
#include "Widgets/lsProgressDialog.h"

#include "Widgets/TimeEstimate.h"
#include "tests/Widgets/WidgetTest.h"

#include <wx/button.h>
#include <wx/gauge.h>
#include <wx/stattext.h>
#include <wx/timer.h>

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

using namespace LS::Tests;
using namespace LS::Widgets;

namespace {

constexpr int ID_SKIP = 32000;
constexpr int JOB = wxPD_CAN_ABORT | wxPD_APP_MODAL | wxPD_AUTO_HIDE | wxPD_SMOOTH;

using TextList = std::vector<std::string>;

/// All texts from top to bottom, captions included.
TextList Texts(const wxDialog& dialog)
{
    TextList texts;
    for (const wxWindow* const pChild : dialog.GetChildren())
        if (const auto* const pText = dynamic_cast<const wxStaticText*>(pChild))
            texts.push_back(pText->GetLabel().ToStdString());
    return texts;
}

/// What the gauge shows; -1 without one.
int Gauge(const wxDialog& dialog)
{
    for (const wxWindow* const pChild : dialog.GetChildren())
        if (const auto* const pGauge = dynamic_cast<const wxGauge*>(pChild))
            return pGauge->GetValue();
    return -1;
}

class ProgressDialog : public WidgetTest {
protected:
    ProgressDialog() { m_other->Show(); }
    ~ProgressDialog() override { m_other->Destroy(); }

    wxFrame* m_other = new wxFrame(nullptr, wxID_ANY, "Other", wxPoint(1000, 50), wxSize(100, 100));
};

} // namespace

TEST_F(ProgressDialog, ShowsValuesAndTexts)
{
    const struct {
        const char* name;
        int nMaximum, nValue;
        const char* szMessage;
        int nGauge;
        TextList texts;
    } cases[] = {
        {"start", 100, 0, "", 0, {"First", ""}},
        {"new message", 100, 45, "Second", 45, {"Second", "45% completed."}},
        {"no gauge", 0, 30, "", -1, {"First", "30% completed."}},
        {"scaled", 70000, 30001, "", 15000, {"First", "15000% completed."}},
        {"beyond the maximum", 100, 101, "", 100, {"First", "101% completed."}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        lsProgressDialog dialog("Title", "First", c.nMaximum, m_frame, JOB);
        EXPECT_TRUE(dialog.Update(c.nValue, c.szMessage));
        EXPECT_EQ(c.nGauge, Gauge(dialog));
        EXPECT_EQ(c.texts, Texts(dialog));
    }
}

TEST_F(ProgressDialog, LocksTheOtherWindowsUntilTheEnd)
{
    for (const bool bOthersToo : {true, false}) {
        const int nStyle = bOthersToo ? JOB : wxPD_CAN_ABORT | wxPD_AUTO_HIDE;
        {
            lsProgressDialog dialog("Title", "Job", 100, m_frame, nStyle);
            EXPECT_FALSE(m_frame->IsEnabled());
            EXPECT_EQ(!bOthersToo, m_other->IsEnabled());
            EXPECT_TRUE(dialog.Update(100));
            Pump(20);
            EXPECT_FALSE(dialog.IsShown());
            EXPECT_TRUE(m_frame->IsEnabled() && m_other->IsEnabled());
        }
        {
            const lsProgressDialog failed("Title", "Job", 100, m_frame, nStyle);
        }
        EXPECT_TRUE(m_frame->IsEnabled() && m_other->IsEnabled());
    }
}

TEST_F(ProgressDialog, EveryWayToCancelReachesAJobThatDoesNotMove)
{
    const std::function<void(wxDialog&)> ways[] = {
        [](wxDialog& dialog) {
            MoveTo(*dialog.FindWindow(wxID_CANCEL), wxPoint(10, 10));
            wxUIActionSimulator().MouseClick();
        },
        [](wxDialog&) { wxUIActionSimulator().Char(WXK_ESCAPE); },
        [](wxDialog& dialog) { dialog.Close(); },
    };
    for (const auto& cancel : ways) {
        SCOPED_TRACE(&cancel - ways);
        lsProgressDialog dialog("Title", "Job", 100, m_frame, JOB);
        ShowAndWait(dialog);
        EXPECT_TRUE(dialog.Update(45));
        Pump(20);
        cancel(dialog);
        int nUpdates = 0;
        while (dialog.Update(45) && ++nUpdates < 400)
            wxMilliSleep(5);
        EXPECT_LT(nUpdates, 400);
        EXPECT_TRUE(dialog.IsShown());
        EXPECT_FALSE(dialog.FindWindow(wxID_CANCEL)->IsEnabled());
        dialog.Resume();
        EXPECT_TRUE(dialog.Update(47));
        Press(dialog, wxID_CANCEL);
        EXPECT_FALSE(dialog.Pulse());
        EXPECT_TRUE(dialog.Update(100)) << "lost at the end";
    }
}

TEST_F(ProgressDialog, CannotBeClosedWithoutACancelButton)
{
    lsProgressDialog dialog("Title", "Job", 100, m_frame, wxPD_APP_MODAL | wxPD_AUTO_HIDE);
    EXPECT_EQ(nullptr, dialog.FindWindow(wxID_CANCEL));
    EXPECT_FALSE(dialog.Close());
    EXPECT_TRUE(dialog.IsShown());
    EXPECT_TRUE(dialog.Update(10));
}

TEST_F(ProgressDialog, WithAllButAutoHideItStaysUntilClosed)
{
    const int nTimes = wxPD_ELAPSED_TIME | wxPD_ESTIMATED_TIME | wxPD_REMAINING_TIME;
    lsProgressDialog dialog("Title", "Job", 100, m_frame,
                            wxPD_CAN_ABORT | wxPD_APP_MODAL | wxPD_CAN_SKIP | nTimes);
    EXPECT_EQ((TextList{"Job", "", "Elapsed time : ", "0:00:00", "Estimated time : ", "unknown",
                        "Remaining time : ", "unknown"}),
              Texts(dialog));
    Press(dialog, ID_SKIP);
    EXPECT_TRUE(dialog.Update(2)) << "a job that asks for no skip";
    for (const bool bExpected : {true, false}) {
        bool bSkip = false;
        EXPECT_TRUE(dialog.Update(3, "", &bSkip));
        EXPECT_EQ(bExpected, bSkip);
    }
    wxTimer closing;
    closing.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
        EXPECT_EQ("Done.", Texts(dialog)[0]);
        EXPECT_FALSE(m_frame->IsEnabled());
        Press(dialog, wxID_CANCEL);
    });
    closing.StartOnce(100);
    EXPECT_TRUE(dialog.Update(100));
    EXPECT_FALSE(dialog.IsShown());
    EXPECT_TRUE(m_frame->IsEnabled());
}

TEST(TimeText, HoursMinutesSeconds)
{
    EXPECT_EQ("0:00:59", TimeText(59).ToStdString());
    EXPECT_EQ("100:01:01", TimeText(100 * 3600 + 61).ToStdString());
    EXPECT_EQ("Unknown", TimeText(UNKNOWN_TIME).ToStdString());
    EXPECT_EQ(0U, SecondsBetween(15, 10)) << "never runs backwards";
}

TEST(GaugeFactor, KeepsTheRangeWithin16Bits)
{
    EXPECT_EQ(1, GaugeFactor(0));
    EXPECT_EQ(1, GaugeFactor(65535));
    EXPECT_EQ(2, GaugeFactor(65536));
    EXPECT_EQ(32768, GaugeFactor(std::numeric_limits<std::int32_t>::max()));
}

TEST(TimeEstimate, MovesWhenConfirmed)
{
    struct Step {
        std::uint32_t nElapsed;
        std::int32_t nValue; ///< of 100
        std::uint32_t nEstimated, nRemaining;
        std::uint32_t nStopped = 0;
    };
    const struct {
        const char* name;
        std::vector<Step> steps;
    } cases[] = {
        {"the first three seconds follow each report",
         {{0, 10, 0, 0}, {1, 10, 10, 9}, {2, 10, 20, 18}, {3, 10, 30, 27}}},
        {"a rise between falls begins the count anew",
         {{3, 10, 30, 27}, {4, 20, 30, 26}, {6, 10, 30, 24}, {7, 35, 30, 23}, {9, 45, 30, 21}}},
        {"an overdue job moves at once", {{3, 100, 3, 0}, {4, 50, 8, 4}}},
        {"the time stopped comes on top", {{2, 50, 4, 2}, {12, 50, 14, 2, 10}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TimeEstimate estimate;
        for (const Step& step : c.steps) {
            estimate.Report(step.nElapsed, step.nStopped, step.nValue, 100);
            EXPECT_EQ(step.nEstimated, estimate.Estimated()) << "after " << step.nElapsed << " s";
            EXPECT_EQ(step.nRemaining, estimate.Remaining(step.nElapsed));
        }
    }
}
