// Adds the handle to the toolkit's splitter and paints the sash.
#include "Widgets/SashSplitter.h"

#include <wx/dcclient.h>
#include <wx/dcscreen.h>
#include <wx/renderer.h>

namespace LS::Widgets {

namespace {

constexpr int SASH_WIDTH = 8;
constexpr int HIT_TOLERANCE = 5;
constexpr int TRACKER_WIDTH = 7;
constexpr unsigned char SASH_GREY = 128;

class SashRenderer : public wxDelegateRendererNative {
public:
    // The default renderer has to be named: without it the generic one would draw all controls.
    SashRenderer() : wxDelegateRendererNative(wxRendererNative::GetDefault()) {}

    wxSplitterRenderParams GetSplitterParams(const wxWindow* window) override
    {
        if (dynamic_cast<const wxSashSplitterWindow*>(window) != nullptr)
            return {SASH_WIDTH, 0, false};
        return wxDelegateRendererNative::GetSplitterParams(window);
    }
};

// What the toolkit can't draw over its windows can't show where a dragged sash will stand: there the sash
// itself follows the pointer.
long WithVisibleDrag(long style)
{
#ifdef __WXGTK__
    return style | wxSP_LIVE_UPDATE;
#else
    return style;
#endif
}

// The base also draws outside of paint events, through a client DC. Under GTK that paints on the root window
// while there is no window of ours yet, and later it is undone by the next paint event.
bool CanDrawNow(const wxDC& dc)
{
#ifdef __WXGTK__
    return dynamic_cast<const wxClientDC*>(&dc) == nullptr || dynamic_cast<const wxPaintDC*>(&dc) != nullptr;
#else
    static_cast<void>(dc);
    return true;
#endif
}

} // namespace

void WidenSashes()
{
    wxRendererNative::Get(); // the first use would reset a renderer that was set before it
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the library deletes it at exit
    delete wxRendererNative::Set(new SashRenderer);
}

// clang-format off
wxBEGIN_EVENT_TABLE(wxSashSplitterWindow, wxSplitterWindow)
    EVT_MOUSE_EVENTS(wxSashSplitterWindow::OnMouse)
    EVT_MOUSE_CAPTURE_LOST(wxSashSplitterWindow::OnCaptureLost)
wxEND_EVENT_TABLE()
// clang-format on

wxSashSplitterWindow::wxSashSplitterWindow(wxWindow* parent, wxWindowID id, const wxPoint& pos,
                                           const wxSize& size, long style, const wxString& name)
    : wxSplitterWindow(parent, id, pos, size, WithVisibleDrag(style), name)
{
    delete m_sashTrackerPen; // the base owns it, and deletes this one too
    m_sashTrackerPen = new wxPen(wxColour(SASH_GREY, SASH_GREY, SASH_GREY), TRACKER_WIDTH);
}

void wxSashSplitterWindow::DrawSash(wxDC& dc)
{
    if (!CanDrawNow(dc)) {
        Refresh();
        return;
    }
    if (HasFlag(wxSP_3DBORDER))
        wxRendererNative::Get().DrawSplitterBorder(this, dc, GetClientRect());
    if (m_sashPosition == 0 || !IsSplit() || IsSashInvisible())
        return;

    // Exactly as thick as the sash: what is painted beyond it would show through panes without a background.
    const wxSize client = GetClientSize();
    dc.SetPen(*wxTRANSPARENT_PEN);
    dc.SetBrush(wxColour(SASH_GREY, SASH_GREY, SASH_GREY));
    if (GetSplitMode() == wxSPLIT_HORIZONTAL) {
        dc.DrawRectangle(2, m_sashPosition, client.x - 4, GetSashSize());
        return;
    }
    dc.DrawRectangle(m_sashPosition, 2, GetSashSize(), client.y - 4);
    const wxRect handle = SashHandleRect(m_sashPosition, client.y, {m_handleWidth, m_handleHeight});
    dc.DrawBitmap(wxBitmap(SashHandleImage(m_expanded)), handle.GetPosition(), false);
}

void wxSashSplitterWindow::DrawSashTracker(int x, int y)
{
    const auto [from, to] = SashTrackerLine(GetSplitMode() == wxSPLIT_VERTICAL, {x, y}, GetClientSize());
    wxScreenDC dc;
    dc.SetLogicalFunction(wxEQUIV); // so that the same line once more restores the screen
    dc.SetPen(*m_sashTrackerPen);
    dc.SetBrush(*wxTRANSPARENT_BRUSH);
    dc.DrawLine(ClientToScreen(from), ClientToScreen(to));
    dc.SetLogicalFunction(wxCOPY);
    dc.SetPen(wxNullPen);
    dc.SetBrush(wxNullBrush);
}

bool wxSashSplitterWindow::SashHitTest(int x, int y)
{
    if (!IsSplit() || m_sashPosition == 0)
        return false;
    const int at = GetSplitMode() == wxSPLIT_VERTICAL ? x : y;
    return at >= m_sashPosition - HIT_TOLERANCE && at <= m_sashPosition + GetSashSize() + HIT_TOLERANCE;
}

bool wxSashSplitterWindow::HasHandle() const
{
    return IsSplit() && GetSplitMode() == wxSPLIT_VERTICAL && m_sashPosition != 0 && !IsSashInvisible();
}

bool wxSashSplitterWindow::IsOverHandle(wxPoint at) const
{
    return HasHandle() &&
           SashHandleRect(m_sashPosition, GetClientSize().y, {m_handleWidth, m_handleHeight}).Contains(at);
}

void wxSashSplitterWindow::TogglePane()
{
    const SashPane pane = Toggled({m_expanded, GetMinimumPaneSize(), m_savedPaneSize});
    m_expanded = pane.expanded;
    m_savedPaneSize = pane.savedSize;
    SetMinimumPaneSize(pane.minimumSize);
    SetSashPosition(GetWindowSize() - pane.minimumSize, true);
    Refresh(); // the arrow turns round
}

void wxSashSplitterWindow::OnMouse(wxMouseEvent& event)
{
    const wxPoint at = event.GetPosition();
    if (IsSashInvisible()) {
        event.Skip();
        return;
    }
    if (event.LeftDown() && IsOverHandle(at)) {
        TogglePane();
        return;
    }
    if (event.LeftDown() && SashHitTest(at.x, at.y))
        m_expanded = true;
    else if (event.LeftUp() && m_dragMode == wxSPLIT_DRAG_DRAGGING)
        m_expanded = IsExpandedAfterDrag(GetMinimumPaneSize());

    OnMouseEvent(event);

    if ((event.Moving() || event.Entering()) && m_dragMode == wxSPLIT_DRAG_NONE && IsOverHandle(at))
        SetCursor(wxCursor(wxCURSOR_HAND));
}

void wxSashSplitterWindow::OnCaptureLost(wxMouseCaptureLostEvent& event)
{
    m_expanded = IsExpandedAfterDrag(GetMinimumPaneSize());
    event.Skip(); // the base ends the drag
}

} // namespace LS::Widgets
