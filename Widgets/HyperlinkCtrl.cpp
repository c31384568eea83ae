// Paints links and tells when they are followed.
#include "Widgets/HyperlinkCtrl.h"

#include "Widgets/Background.h"

#include <wx/dcclient.h>

namespace LS::Widgets {

wxDEFINE_EVENT(lsEVT_HYPERLINK, lsHyperlinkEvent);

wxIMPLEMENT_DYNAMIC_CLASS(lsHyperlinkCtrl, wxControl);

// clang-format off
wxBEGIN_EVENT_TABLE(lsHyperlinkCtrl, wxControl)
    EVT_LEFT_DOWN(lsHyperlinkCtrl::OnPress)
    EVT_LEFT_DCLICK(lsHyperlinkCtrl::OnPress)
    EVT_ENTER_WINDOW(lsHyperlinkCtrl::OnEnter)
    EVT_LEAVE_WINDOW(lsHyperlinkCtrl::OnLeave)
    EVT_KEY_DOWN(lsHyperlinkCtrl::OnKey)
    EVT_SET_FOCUS(lsHyperlinkCtrl::OnFocus)
    EVT_KILL_FOCUS(lsHyperlinkCtrl::OnFocus)
    EVT_PAINT(lsHyperlinkCtrl::OnPaint)
wxEND_EVENT_TABLE()
// clang-format on

lsHyperlinkCtrl::lsHyperlinkCtrl(wxWindow* parent, wxWindowID id, const wxString& label, const wxPoint& pos,
                                 const wxSize& size, long style, const wxString& name)
{
    Create(parent, id, label, pos, size, style, name);
}

bool lsHyperlinkCtrl::Create(wxWindow* parent, wxWindowID id, const wxString& label, const wxPoint& pos,
                             const wxSize& size, long style, const wxString& name)
{
    SetBackgroundStyle(wxBG_STYLE_PAINT); // the toolkit wants to know before the window exists
    if (!wxControl::Create(parent, id, pos, size, style | wxBORDER_NONE, wxDefaultValidator, name))
        return false;
    m_label = label;
    SetForegroundColour(m_linkColour);
    SetFont(GetFont().Underlined());
    m_normalBackground = GetBackgroundColour();
    Measure();
    return true;
}

void lsHyperlinkCtrl::SetLabel(const wxString& label)
{
    m_label = label;
    Measure();
    Refresh();
}

void lsHyperlinkCtrl::SetLinkColour(const wxColour& colour)
{
    m_linkColour = colour;
    if (!m_visited)
        Recolour(colour);
}

void lsHyperlinkCtrl::SetVisitedColour(const wxColour& colour)
{
    m_visitedColour = colour;
    if (m_visited)
        Recolour(colour);
}

void lsHyperlinkCtrl::Measure()
{
    wxClientDC dc(this);
    dc.SetFont(GetFont());
    dc.GetTextExtent(m_label, &m_textWidth, &m_textHeight);
    SetMinSize(wxDefaultSize); // the size of the last text must not hold
    InvalidateBestSize();
    SetInitialSize(GetBestSize());
}

void lsHyperlinkCtrl::Recolour(const wxColour& colour)
{
    SetForegroundColour(colour);
    Refresh();
}

void lsHyperlinkCtrl::Follow()
{
    m_visited = true;
    SetBackgroundColour(m_normalBackground);
    Recolour(m_visitedColour);

    // Comes last: a handler may show a dialog, or destroy this control.
    lsHyperlinkEvent event(lsEVT_HYPERLINK, GetId());
    event.SetEventObject(this);
    GetEventHandler()->ProcessEvent(event);
}

void lsHyperlinkCtrl::OnPress(wxMouseEvent&)
{
    Follow();
}

void lsHyperlinkCtrl::OnEnter(wxMouseEvent&)
{
    SetCursor(m_linkCursor);
    Recolour(m_hoverColour);
}

void lsHyperlinkCtrl::OnLeave(wxMouseEvent&)
{
    SetCursor(wxNullCursor);
    Recolour(m_visited ? m_visitedColour : m_linkColour);
}

void lsHyperlinkCtrl::OnKey(wxKeyEvent& event)
{
    switch (event.GetKeyCode()) {
    case WXK_SPACE:
    case WXK_RETURN:
    case WXK_NUMPAD_ENTER:
        Follow();
        break;
    default:
        event.Skip();
    }
}

void lsHyperlinkCtrl::OnFocus(wxFocusEvent& event)
{
    Refresh();
    event.Skip();
}

void lsHyperlinkCtrl::OnPaint(wxPaintEvent&)
{
    wxPaintDC dc(this);
    PaintBackground(dc, *this);
    dc.SetFont(GetFont());
    dc.SetTextForeground(GetForegroundColour());
    dc.DrawText(m_label, 0, 0);
    if (!HasFocus())
        return;
    // The theme's own mark isn't to be seen on so small a control.
    dc.SetPen(wxPen(GetForegroundColour(), 1, wxPENSTYLE_DOT));
    dc.SetBrush(*wxTRANSPARENT_BRUSH);
    dc.DrawRectangle(GetClientRect());
}

} // namespace LS::Widgets
