// Shows a crop and follows the hand that drags it.
#include "Widgets/lsJpegCQCtrl.h"

#include "Widgets/CropView.h"
#include "resources/Pictures.h"

#include <wx/dcbuffer.h>
#include <wx/log.h>
#include <wx/panel.h>

namespace LS::Widgets {

wxDEFINE_EVENT(lsEVT_MOVE_JPEG, lsMoveJpegEvent);

wxPoint lsJpegCQCtrl::s_origin;

// A second press soon after a drag reaches the window as a double click; the hand grips all the same.
// clang-format off
wxBEGIN_EVENT_TABLE(lsJpegCQCtrl, wxWindow)
    EVT_PAINT(lsJpegCQCtrl::OnPaint)
    EVT_ERASE_BACKGROUND(lsJpegCQCtrl::OnEraseBackground)
    EVT_LEFT_DOWN(lsJpegCQCtrl::OnLeftDown)
    EVT_LEFT_DCLICK(lsJpegCQCtrl::OnLeftDown)
    EVT_LEFT_UP(lsJpegCQCtrl::OnLeftUp)
    EVT_MOTION(lsJpegCQCtrl::OnMotion)
    EVT_MOUSE_CAPTURE_LOST(lsJpegCQCtrl::OnCaptureLost)
wxEND_EVENT_TABLE()
// clang-format on

lsJpegCQCtrl::lsJpegCQCtrl(wxWindow* parent, wxWindowID id, const wxPoint& pos, const wxSize& size,
                           long style)
{
    SetBackgroundStyle(wxBG_STYLE_CUSTOM); // the toolkit wants to know before the window exists
    Create(parent, id, pos, size, style, wxPanelNameStr);
    m_cursorOpen = wxCursor(LS::Resources::HandCursor(LS::Resources::Hand::Open));
    m_cursorClosed = wxCursor(LS::Resources::HandCursor(LS::Resources::Hand::Gripping));
    SetCursor(m_cursorOpen);
    const wxLogNull quiet; // handlers that are there already would be named in the log
    wxInitAllImageHandlers();
}

lsJpegCQCtrl::~lsJpegCQCtrl()
{
    if (HasCapture()) // a dialog that the keyboard closes during a drag
        ReleaseMouse();
}

void lsJpegCQCtrl::SetImageSize(int w, int h)
{
    m_imageSize.Set(w, h);
    s_origin = CentredCrop(m_imageSize, Side()).GetPosition();
}

int lsJpegCQCtrl::Side() const
{
    return wxRound(VIEW_SIDE * GetContentScaleFactor());
}

bool lsJpegCQCtrl::SetBitmap(const wxImage& image)
{
    if (!image.IsOk())
        return false;
    m_bitmap = std::make_unique<wxBitmap>(image, wxBITMAP_SCREEN_DEPTH, GetContentScaleFactor());
    Refresh(true);
    return true;
}

void lsJpegCQCtrl::OnPaint(wxPaintEvent&)
{
    wxBufferedPaintDC dc(this);
    PrepareDC(dc);
    dc.SetBackground(wxBrush(wxColour(218, 218, 218)));
    dc.Clear();
    if (!m_bitmap || !m_bitmap->IsOk())
        return;
    // Where the bitmap is smaller than the view, what it doesn't cover stays background.
    dc.DrawBitmap(*m_bitmap, 0, 0);
}

void lsJpegCQCtrl::OnEraseBackground(wxEraseEvent& event)
{
    event.Skip();
}

void lsJpegCQCtrl::OnLeftDown(wxMouseEvent& event)
{
    if (!m_bitmap || !m_bitmap->IsOk())
        return;
    SetCursor(m_cursorClosed);
    if (!HasCapture())
        CaptureMouse();
    m_lastPos = event.GetPosition();
    m_dragging = true;
}

void lsJpegCQCtrl::OnLeftUp(wxMouseEvent& event)
{
    event.Skip();
    if (!m_bitmap || !m_bitmap->IsOk())
        return;
    if (HasCapture())
        ReleaseMouse();
    EndDrag();
}

void lsJpegCQCtrl::OnMotion(wxMouseEvent& event)
{
    if (!m_dragging)
        return;
    const double dScale = GetContentScaleFactor();
    const wxPoint moved =
        DraggedOrigin(s_origin, m_lastPos * dScale, event.GetPosition() * dScale, m_imageSize, Side());
    m_lastPos = event.GetPosition();
    if (moved != s_origin) {
        s_origin = moved;
        Refresh();
    }
    lsMoveJpegEvent move(lsEVT_MOVE_JPEG, GetId());
    move.SetEventObject(this);
    move.SetPosition(s_origin);
    ProcessWindowEvent(move);
}

void lsJpegCQCtrl::OnCaptureLost(wxMouseCaptureLostEvent&)
{
    EndDrag();
}

void lsJpegCQCtrl::EndDrag()
{
    m_dragging = false;
    SetCursor(m_cursorOpen);
}

} // namespace LS::Widgets
