// The progress dialog beside a frame that it locks, and its times.
#include "Widgets/lsProgressDialog.h"

#include "Widgets/TimeEstimate.h"
#include "tests/Widgets/WidgetTest.h"

#include <wx/gauge.h>
#include <wx/stattext.h>

#include <functional>
#include <string>
#include <vector>

using namespace LS::Tests;
using namespace LS::Widgets;

namespace {

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

/// What the gauge shows.
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
    lsProgressDialog dialog("Title", "First", 100, m_frame, JOB);
    const struct {
        int nValue;
        const char* szMessage;
        int nGauge;
        TextList texts;
    } cases[] = {
        {0, "", 0, {"First", ""}},
        {45, "Second", 45, {"Second", "45% completed."}},
        {101, "", 100, {"Second", "101% completed."}},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(dialog.Update(c.nValue, c.szMessage));
        EXPECT_EQ(c.nGauge, Gauge(dialog));
        EXPECT_EQ(c.texts, Texts(dialog));
    }
}

TEST_F(ProgressDialog, LocksTheOtherWindowsUntilTheEnd)
{
    for (const bool bFails : {false, true}) {
        {
            lsProgressDialog dialog("Title", "Job", 100, m_frame, JOB);
            EXPECT_FALSE(m_frame->IsEnabled() || m_other->IsEnabled());
            EXPECT_TRUE(bFails || dialog.Update(100));
            EXPECT_EQ(bFails, dialog.IsShown());
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

TEST(TimeText, HoursMinutesSeconds)
{
    EXPECT_EQ("0:00:59", TimeText(59).ToStdString());
    EXPECT_EQ("100:01:01", TimeText(100 * 3600 + 61).ToStdString());
    EXPECT_EQ("Unknown", TimeText(UNKNOWN_TIME).ToStdString());
}
