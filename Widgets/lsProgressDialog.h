// The window shown for the length of a long job.
#pragma once

#include "Widgets/TimeEstimate.h"
#include "engine/ProgbarSetter.h"

#include <wx/dialog.h>
#include <wx/progdlg.h>
#include <wx/utils.h>

#include <cstdint>
#include <memory>

class wxBoxSizer;
class wxButton;
class wxGauge;
class wxStaticText;

namespace LS::Widgets {

/// Shows how far a job is and lets the user stop it. It isn't run modally: the job runs in an event handler
/// and calls Update from time to time, which shows the position, lets pending events through and says
/// whether to go on. While the dialog is on show the user can reach no other window.
///
/// Styles are wx's own: wxPD_CAN_ABORT, wxPD_CAN_SKIP (buttons), wxPD_APP_MODAL (disables every other window,
/// not only the parent), wxPD_AUTO_HIDE (hides at the maximum in place of waiting for the user),
/// wxPD_ELAPSED_TIME, wxPD_ESTIMATED_TIME, wxPD_REMAINING_TIME (one row each) and wxPD_SMOOTH.
class lsProgressDialog : public wxDialog, public ProgressTarget {
public:
    /// The dialog is on show when this returns.
    /// @param maximum  the value at which the job is done; 0 and below make a dialog without gauge
    /// @param parent   may be null
    lsProgressDialog(const wxString& title, const wxString& message, int maximum = 100,
                     wxWindow* parent = nullptr, int style = wxPD_APP_MODAL | wxPD_AUTO_HIDE);
    ~lsProgressDialog() override;

    using wxDialog::Update;

    /// Shows a position and lets pending events through. The percent line shows the value itself, so jobs
    /// count to 100. At the maximum the dialog hides, or without wxPD_AUTO_HIDE stays until the user closes
    /// it.
    /// @param newmsg  a new message line; empty keeps the one on show
    /// @param skip    set to true, once, after the user pressed Skip; or null
    /// @return false once the user asked to stop; the job must stop then
    bool Update(int value, const wxString& newmsg = wxEmptyString, bool* skip = nullptr) override;

    /// Update for a job of unknown length: the gauge moves to and fro.
    virtual bool Pulse(const wxString& newmsg = wxEmptyString, bool* skip = nullptr);

    /// Goes on after a false from Update.
    void Resume();

    /// Hiding makes the other windows usable again first.
    bool Show(bool show = true) override;

private:
    enum State : std::int32_t { Uncancelable = -1, Canceled, Continue, Finished };

    int CreateControls(const wxString& message, int maximum);
    int AddTimeRows(wxSizer& top);
    int AddButtons(wxSizer& top);
    void FitToMessage(const wxString& message, int nHeight);
    void WaitUntilVisible();
    void DisableOtherWindows();
    void ReenableOtherWindows();

    void ShowValue(int value);
    void ShowMessage(const wxString& newmsg);
    void ShowTimes(int value);
    bool SetText(wxStaticText& label, const wxString& text);
    void SetTime(wxStaticText* pLabel, std::uint32_t nSeconds);
    bool LetUserAct(bool* skip);
    void Finish(const wxString& newmsg);
    void RequestStop();
    std::uint32_t Elapsed() const;
    bool HasTimes() const { return m_elapsed || m_estimated || m_remaining; }

    void OnCancel(wxCommandEvent& event);
    void OnSkip(wxCommandEvent& event);
    void OnClose(wxCloseEvent& event);
    void OnShow(wxShowEvent& event);

    wxGauge* m_gauge = nullptr; ///< null without a maximum
    wxStaticText* m_msg = nullptr;
    wxStaticText* m_percent = nullptr;
    wxStaticText* m_elapsed = nullptr; ///< null if not asked for, as the next two
    wxStaticText* m_estimated = nullptr;
    wxStaticText* m_remaining = nullptr;
    std::uint32_t m_timeStart = 0; ///< when the job began, seconds
    std::uint32_t m_timeStop = 0;  ///< when the user last asked to stop
    std::uint32_t m_break = 0;     ///< seconds stopped, up to now
    wxWindow* m_parentTop;         ///< may be null
    State m_state;
    bool m_skip = false; ///< Skip was pressed and the job doesn't know yet
    wxButton* m_btnAbort = nullptr;
    wxButton* m_btnSkip = nullptr;
    std::int32_t m_maximum; ///< divided by m_factor
    TimeEstimate m_timeEstimate;
    bool m_hasAbortButton;
    bool m_hasSkipButton;
    std::int32_t m_factor; ///< keeps the gauge within 16 bits
    std::unique_ptr<wxWindowDisabler> m_winDisabler;
    bool m_pulsing = false; ///< the gauge moves to and fro and shows no value
    bool m_meantToShow = false;
    bool m_changed = false; ///< something on show changed since the last repaint

    wxDECLARE_EVENT_TABLE();
};

} // namespace LS::Widgets
