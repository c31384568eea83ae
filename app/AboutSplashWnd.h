// The window with the program's picture, version and credits: the splash at its start, the about box later.
#pragma once

#include <wx/bmpbndl.h>
#include <wx/dialog.h>
#include <wx/font.h>
#include <wx/timer.h>

/// A picture without a border, over which the credits scroll. Run it by ShowModal; the result is wxID_OK.
/// As it is made it is the splash, which ends by itself after some four seconds; after SetAboutMode it stays.
/// In both uses a press of the left or right mouse button ends it, and Escape the about box.
class AboutSplashWnd : public wxDialog {
public:
    /// The timer runs from here on.
    AboutSplashWnd(wxWindow* parent, wxWindowID id, const wxString& title,
                   const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxSize(481, 294),
                   long style = wxNO_BORDER | wxSTAY_ON_TOP);
    AboutSplashWnd(const AboutSplashWnd&) = delete;
    AboutSplashWnd& operator=(const AboutSplashWnd&) = delete;
    ~AboutSplashWnd() override;

    /// The credits start again, and the window stays until it is clicked. Call it before ShowModal.
    void SetAboutMode();

protected:
    /// Draws all of the window.
    void Draw(wxDC& dc) const;

private:
    void OnTimer(wxTimerEvent& event);
    void OnPaint(wxPaintEvent& event);
    void OnEraseBackground(wxEraseEvent& event);
    void OnMouse(wxMouseEvent& event);
    void OnKey(wxKeyEvent& event);

    void StartTimer();
    void StopTimer();
    void EndRun();
    void DrawCredits(wxDC& dc) const;

    int m_scrollPos; ///< y of the first line of the credits within their area
    wxTimer m_timer;
    wxBitmapBundle m_background;
    wxString m_versionText;
    wxFont m_font;
    bool m_autoClose = true; ///< the splash, not the about box

    wxDECLARE_EVENT_TABLE();
};
