// Draws the picture, the version and the scrolling credits.
#include "app/AboutSplashWnd.h"

#include "app/Credits.h"
#include "app/CreditsScroll.h"
#include "resources/Pictures.h"

#include <wx/dcclient.h>

namespace {

constexpr int TICK_MS = 80;
constexpr int FONT_SIZE = 9;
constexpr int SECTION_GAP = 12;

const wxPoint VERSION_AT(270, 68);
const wxRect CREDITS_AREA(170, 80, 150, 150);

} // namespace

wxBEGIN_EVENT_TABLE(AboutSplashWnd, wxDialog) EVT_TIMER(wxID_ANY, AboutSplashWnd::OnTimer)
    EVT_PAINT(AboutSplashWnd::OnPaint) EVT_ERASE_BACKGROUND(AboutSplashWnd::OnEraseBackground)
        EVT_MOUSE_EVENTS(AboutSplashWnd::OnMouse) EVT_CHAR_HOOK(AboutSplashWnd::OnKey) wxEND_EVENT_TABLE()

AboutSplashWnd::AboutSplashWnd(wxWindow* parent, wxWindowID id, const wxString& title, const wxPoint& pos,
                               const wxSize& size, long style)
    : wxDialog(parent, id, title, pos, size, style), m_scrollPos(CREDITS_START), m_timer(this, wxID_ANY),
      m_background(LS::Resources::SplashPicture()),
      m_versionText(wxString("Version: ") + "6.00" + "." + "090417"),
      m_font(FONT_SIZE, wxFONTFAMILY_SWISS, wxFONTSTYLE_NORMAL, wxFONTWEIGHT_NORMAL)
{
    SetForegroundColour(*wxBLACK); // the picture is light on dark themes, too
    StartTimer();
}

AboutSplashWnd::~AboutSplashWnd()
{
    StopTimer();
}

void AboutSplashWnd::SetAboutMode()
{
    m_scrollPos = CREDITS_START;
    m_autoClose = false;
    SetCanFocus(true); // there is no control that the toolkit would give the keys to
    SetFocus();
    StartTimer();
}

void AboutSplashWnd::OnTimer(wxTimerEvent&)
{
    m_scrollPos = NextCreditsPosition(m_scrollPos);
    if (m_autoClose && SplashEndsAt(m_scrollPos))
        EndRun();
    RefreshRect(CREDITS_AREA, true);
}

void AboutSplashWnd::OnPaint(wxPaintEvent&)
{
    wxPaintDC dc(this);
    Draw(dc);
}

void AboutSplashWnd::Draw(wxDC& dc) const
{
    if (m_background.IsOk())
        dc.DrawBitmap(m_background.GetBitmapFor(this), 0, 0, true);
    dc.SetFont(m_font);
    dc.DrawText(m_versionText, VERSION_AT);

    // The clipping region is taken in the coordinates in force, so it comes before the origin moves.
    dc.SetClippingRegion(CREDITS_AREA);
    dc.SetDeviceOrigin(CREDITS_AREA.x, CREDITS_AREA.y);
    DrawCredits(dc);
    dc.SetDeviceOrigin(0, 0);
    dc.DestroyClippingRegion();
}

void AboutSplashWnd::DrawCredits(wxDC& dc) const
{
    const int height = dc.GetCharHeight();
    int y = m_scrollPos;
    for (const CreditsSection section : CreditsSections()) {
        for (const char* const line : section) {
            dc.DrawText(line, 0, y);
            y += height;
        }
        y += SECTION_GAP;
    }
}

// The picture covers everything; erasing it before each tick would flicker.
void AboutSplashWnd::OnEraseBackground(wxEraseEvent&) {}

void AboutSplashWnd::OnMouse(wxMouseEvent& event)
{
    if (event.LeftDown() || event.RightDown()) {
        StopTimer();
        EndRun();
    }
    event.Skip();
}

void AboutSplashWnd::OnKey(wxKeyEvent& event)
{
    if (event.GetKeyCode() == WXK_ESCAPE && !m_autoClose) {
        StopTimer();
        EndRun();
        return;
    }
    event.Skip();
}

void AboutSplashWnd::StartTimer()
{
    if (!m_timer.IsRunning())
        m_timer.Start(TICK_MS);
}

void AboutSplashWnd::StopTimer()
{
    if (m_timer.IsRunning())
        m_timer.Stop();
}

void AboutSplashWnd::EndRun()
{
    if (IsModal())
        EndModal(wxID_OK);
}
