// A gauge, texts and two buttons that live from the job's own calls: no timer and no thread.
#include "Widgets/lsProgressDialog.h"

#include <wx/app.h>
#include <wx/button.h>
#include <wx/dcclient.h>
#include <wx/evtloop.h>
#include <wx/gauge.h>
#include <wx/intl.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <algorithm>

namespace LS::Widgets {

namespace {

constexpr int ID_SKIP = 32000;
constexpr int LAYOUT_MARGIN = 8;
constexpr int MIN_WIDTH = 300;
constexpr int MAX_SHOW_MS = 1000;

std::uint32_t Now()
{
    return static_cast<std::uint32_t>(wxGetCurrentTime());
}

/// Whether an event waits to be delivered. Asking costs a fiftieth of letting none through.
bool HasWaitingEvents()
{
    const wxEventLoopBase* const pLoop = wxEventLoopBase::GetActive();
    return !pLoop || pLoop->Pending() || wxTheApp->HasPendingEvents();
}

void EnableIfPresent(wxWindow* pWindow, bool bEnable)
{
    if (pWindow)
        pWindow->Enable(bEnable);
}

} // namespace

// clang-format off
wxBEGIN_EVENT_TABLE(lsProgressDialog, wxDialog)
    EVT_BUTTON(wxID_CANCEL, lsProgressDialog::OnCancel)
    EVT_BUTTON(ID_SKIP, lsProgressDialog::OnSkip)
    EVT_CLOSE(lsProgressDialog::OnClose)
    EVT_SHOW(lsProgressDialog::OnShow)
wxEND_EVENT_TABLE()
// clang-format on

lsProgressDialog::lsProgressDialog(const wxString& title, const wxString& message, int maximum,
                                   wxWindow* parent, int style)
    : wxDialog(parent, wxID_ANY, title), m_parentTop(wxGetTopLevelParent(parent)),
      m_state(style & wxPD_CAN_ABORT ? Continue : Uncancelable), m_maximum(std::max(maximum, 0)),
      m_hasAbortButton((style & wxPD_CAN_ABORT) != 0), m_hasSkipButton((style & wxPD_CAN_SKIP) != 0),
      m_factor(GaugeFactor(m_maximum))
{
    SetExtraStyle(GetExtraStyle() | wxWS_EX_TRANSIENT);
    SetWindowStyle(GetWindowStyle() | style);
    SetBackgroundStyle(wxBG_STYLE_SYSTEM); // nobody erases it, and preparing that took a fifth of an update
    if (!m_hasAbortButton)
        EnableCloseButton(false);
    m_maximum /= m_factor;

    const int nHeight = CreateControls(message, maximum);
    FitToMessage(message, nHeight);
    Centre();
    DisableOtherWindows();
    Show();
    WaitUntilVisible();
    Enable();
    SetTime(m_elapsed, 0);
    Update();
}

lsProgressDialog::~lsProgressDialog()
{
    ReenableOtherWindows();
}

/// @return the height of all controls with their margins
int lsProgressDialog::CreateControls(const wxString& message, int maximum)
{
    const int nMargin = 2 * LAYOUT_MARGIN;
    auto* const top = new wxBoxSizer(wxVERTICAL);
    m_msg = new wxStaticText(this, wxID_ANY, message);
    top->Add(m_msg, 0, wxLEFT | wxTOP, nMargin);
    int nHeight = m_msg->GetSize().y + nMargin;

    if (maximum >= 1) {
        const long nSmooth = HasFlag(wxPD_SMOOTH) ? wxGA_SMOOTH : 0;
        m_gauge = new wxGauge(this, wxID_ANY, m_maximum, wxDefaultPosition, wxDefaultSize,
                              wxGA_HORIZONTAL | nSmooth);
        top->Add(m_gauge, 0, wxLEFT | wxRIGHT | wxTOP | wxEXPAND, nMargin);
        m_gauge->SetValue(0);
        nHeight += m_gauge->GetSize().y + nMargin;
    }

    m_percent = new wxStaticText(this, wxID_ANY, wxEmptyString);
    top->Add(m_percent, 0, wxLEFT | wxTOP, nMargin);
    nHeight += m_percent->GetSize().y + nMargin;

    nHeight += AddTimeRows(*top);
    nHeight += AddButtons(*top);
    SetSizerAndFit(top);
    return nHeight;
}

int lsProgressDialog::AddTimeRows(wxSizer& top)
{
    const struct {
        int nStyle;
        const char* szCaption;
        wxStaticText*& pValue;
    } rows[] = {
        {wxPD_ELAPSED_TIME, "Elapsed time : ", m_elapsed},
        {wxPD_ESTIMATED_TIME, "Estimated time : ", m_estimated},
        {wxPD_REMAINING_TIME, "Remaining time : ", m_remaining},
    };
    int nRows = 0, nTextHeight = 0;
    for (const auto& row : rows) {
        if (!HasFlag(row.nStyle))
            continue;
        auto* const line = new wxBoxSizer(wxHORIZONTAL);
        line->Add(new wxStaticText(this, wxID_ANY, row.szCaption), 1);
        row.pValue = new wxStaticText(this, wxID_ANY, "unknown");
        line->Add(row.pValue, 1, wxLEFT, LAYOUT_MARGIN);
        top.Add(line, 0, wxALIGN_CENTER_HORIZONTAL | wxTOP, LAYOUT_MARGIN);
        nTextHeight = row.pValue->GetSize().y;
        ++nRows;
    }
    if (nRows > 0)
        m_timeStart = Now();
    return nRows * (nTextHeight + LAYOUT_MARGIN);
}

int lsProgressDialog::AddButtons(wxSizer& top)
{
    auto* const line = new wxBoxSizer(wxHORIZONTAL);
    if (m_hasSkipButton) {
        m_btnSkip = new wxButton(this, ID_SKIP, "Skip");
        line->Add(m_btnSkip, 0, wxALL, LAYOUT_MARGIN);
    }
    if (m_hasAbortButton) {
        m_btnAbort = new wxButton(this, wxID_CANCEL);
        line->Add(m_btnAbort, 0, wxALL, LAYOUT_MARGIN);
    }
    top.Add(line, 0, wxALIGN_RIGHT | wxALL, LAYOUT_MARGIN);
    return m_btnSkip || m_btnAbort ? wxButton::GetDefaultSize().y + 2 * LAYOUT_MARGIN : 0;
}

void lsProgressDialog::FitToMessage(const wxString& message, int nHeight)
{
    if (wxSystemSettings::GetScreenType() < wxSYS_SCREEN_SMALL)
        return;
    wxClientDC dc(this);
    dc.SetFont(wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT));
    nHeight += 2 * LAYOUT_MARGIN;
    SetClientSize(std::max({3 * dc.GetTextExtent(message).x / 2, 4 * nHeight / 3, MIN_WIDTH}), nHeight);
}

/// Under X the toolkit puts the showing off until the window manager has told the size of its borders. A job
/// that is done by then would hide a window that comes up after that, and stays.
void lsProgressDialog::WaitUntilVisible()
{
#ifdef __WXGTK__
    wxEventLoopBase* const pLoop = wxEventLoopBase::GetActive();
    for (int i = 0; pLoop && m_deferShow && i < MAX_SHOW_MS; ++i) {
        pLoop->YieldFor(wxEVT_CATEGORY_UI);
        wxMilliSleep(1);
    }
#endif
}

void lsProgressDialog::DisableOtherWindows()
{
    if (HasFlag(wxPD_APP_MODAL))
        m_winDisabler = std::make_unique<wxWindowDisabler>(this);
    else
        EnableIfPresent(m_parentTop, false);
}

void lsProgressDialog::ReenableOtherWindows()
{
    if (HasFlag(wxPD_APP_MODAL))
        m_winDisabler.reset();
    else
        EnableIfPresent(m_parentTop, true);
}

bool lsProgressDialog::Show(bool show)
{
    m_meantToShow = show;
    // First the others: a window system that hides the only enabled window activates another program's.
    if (!show)
        ReenableOtherWindows();
    return wxDialog::Show(show);
}

bool lsProgressDialog::Update(int value, const wxString& newmsg, bool* skip)
{
    value /= m_factor;
    ShowValue(value);
    ShowMessage(newmsg);
    if (value != 0) {
        SetText(*m_percent, wxString::Format(wxGetTranslation("%d%% completed."), value));
        ShowTimes(value);
    }
    if (value != m_maximum)
        return LetUserAct(skip);
    if (m_state != Finished)
        Finish(newmsg);
    return true;
}

bool lsProgressDialog::Pulse(const wxString& newmsg, bool* skip)
{
    if (m_gauge) {
        m_gauge->Pulse();
        m_pulsing = true;
        m_changed = true;
    }
    ShowMessage(newmsg);
    if (HasTimes()) {
        SetTime(m_elapsed, Elapsed());
        SetTime(m_estimated, UNKNOWN_TIME);
        SetTime(m_remaining, UNKNOWN_TIME);
    }
    return LetUserAct(skip);
}

void lsProgressDialog::Resume()
{
    m_state = Continue;
    m_timeEstimate.ExpectRise();
    m_break += SecondsBetween(m_timeStop, Now());
    EnableIfPresent(m_btnAbort, true);
    EnableIfPresent(m_btnSkip, true);
    m_skip = false;
}

void lsProgressDialog::ShowValue(int value)
{
    if (!m_gauge)
        return;
    value = std::clamp(value, 0, m_maximum); // the gauge refuses values beyond its range
    if (value == m_gauge->GetValue() && !m_pulsing)
        return; // setting it again would repaint it
    m_gauge->SetValue(value);
    m_pulsing = false;
    m_changed = true;
}

void lsProgressDialog::ShowMessage(const wxString& newmsg)
{
    if (!newmsg.empty() && SetText(*m_msg, newmsg))
        wxYieldIfNeeded();
}

/// A text is set only when it changes: each setting costs a layout and a repaint. @return whether it did
bool lsProgressDialog::SetText(wxStaticText& label, const wxString& text)
{
    if (label.GetLabel() == text)
        return false;
    label.SetLabel(text);
    m_changed = true;
    return true;
}

/// A null label is ignored.
void lsProgressDialog::SetTime(wxStaticText* pLabel, std::uint32_t nSeconds)
{
    if (pLabel)
        SetText(*pLabel, TimeText(nSeconds));
}

void lsProgressDialog::ShowTimes(int value)
{
    if (!HasTimes())
        return;
    const std::uint32_t nElapsed = Elapsed();
    m_timeEstimate.Report(nElapsed, m_break, value, m_maximum);
    SetTime(m_elapsed, nElapsed);
    SetTime(m_estimated, m_timeEstimate.Estimated());
    SetTime(m_remaining, m_timeEstimate.Remaining(nElapsed));
}

/// Delivers waiting events, among them presses of Cancel and Skip. @return false once the user asked to stop
bool lsProgressDialog::LetUserAct(bool* skip)
{
    // Reports that change nothing are cheap this way.
    if (m_changed || HasWaitingEvents()) {
        wxYieldIfNeeded();
        Update();
        m_changed = false;
    }
    if (m_skip && skip && !*skip) {
        *skip = true;
        m_skip = false;
        EnableIfPresent(m_btnSkip, true);
    }
    return m_state != Canceled;
}

void lsProgressDialog::Finish(const wxString& newmsg)
{
    m_state = Finished;
    if (HasFlag(wxPD_AUTO_HIDE)) {
        Show(false);
    } else {
        if (m_btnAbort) {
            m_btnAbort->Enable();
            m_btnAbort->SetLabel("Close");
        }
        EnableIfPresent(m_btnSkip, false);
        EnableCloseButton();
        if (newmsg.empty())
            SetText(*m_msg, "Done.");
        wxYieldIfNeeded();
        ShowModal();
    }
    Update();
}

std::uint32_t lsProgressDialog::Elapsed() const
{
    return SecondsBetween(m_timeStart, Now());
}

/// The dialog stays on show until the job sees it at its next update; the buttons say at once that the press
/// was noted.
void lsProgressDialog::RequestStop()
{
    m_state = Canceled;
    EnableIfPresent(m_btnAbort, false);
    EnableIfPresent(m_btnSkip, false);
    m_timeStop = Now();
}

void lsProgressDialog::OnCancel(wxCommandEvent& event)
{
    if (m_state == Finished)
        event.Skip(); // ends the modal run
    else
        RequestStop();
}

void lsProgressDialog::OnSkip(wxCommandEvent&)
{
    EnableIfPresent(m_btnSkip, false);
    m_skip = true;
}

/// The news that the window came up may arrive when it is hidden again; the toolkit would then take it for
/// shown.
void lsProgressDialog::OnShow(wxShowEvent& event)
{
    if (event.IsShown() && !m_meantToShow)
        wxDialog::Show(false);
    event.Skip();
}

void lsProgressDialog::OnClose(wxCloseEvent& event)
{
    if (m_state == Uncancelable)
        event.Veto();
    else if (m_state == Finished)
        event.Skip();
    else
        RequestStop();
}

} // namespace LS::Widgets
