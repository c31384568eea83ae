// A text that looks and behaves like a web link.
#pragma once

#include <wx/colour.h>
#include <wx/control.h>
#include <wx/cursor.h>

namespace LS::Widgets {

/// Sent when a link is followed; the event object is the link.
class lsHyperlinkEvent : public wxCommandEvent {
public:
    explicit lsHyperlinkEvent(wxEventType type = wxEVT_NULL, int id = 0) : wxCommandEvent(type, id) {}
    wxEvent* Clone() const override { return new lsHyperlinkEvent(*this); }
};

wxDECLARE_EVENT(lsEVT_HYPERLINK, lsHyperlinkEvent);

using lsHyperlinkEventFunction = void (wxEvtHandler::*)(lsHyperlinkEvent&);

/// A link. It opens nothing: each press of the left button, and Space or Enter while it has the focus, sends
/// an lsEVT_HYPERLINK.
class lsHyperlinkCtrl : public wxControl {
public:
    lsHyperlinkCtrl() = default;
    /// The control is as large as its text, whatever the size.
    lsHyperlinkCtrl(wxWindow* parent, wxWindowID id, const wxString& label,
                    const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxDefaultSize,
                    long style = 0, const wxString& name = "lsHyperlinkCtrl");
    bool Create(wxWindow* parent, wxWindowID id, const wxString& label,
                const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxDefaultSize, long style = 0,
                const wxString& name = "lsHyperlinkCtrl");

    /// Shows another text; the control takes its size.
    void SetLabel(const wxString& label) override;
    wxString GetLabel() const override { return m_label; }

    /// The cursor over the link, from the next time that the pointer enters it.
    const wxCursor& GetLinkCursor() const { return m_linkCursor; }
    void SetLinkCursor(const wxCursor& cursor) { m_linkCursor = cursor; }

    /// The colour under the pointer, from the next time that it enters the link.
    const wxColour& GetHoverColour() const { return m_hoverColour; }
    void SetHoverColour(const wxColour& colour) { m_hoverColour = colour; }

    /// The colour of a link that hasn't been followed.
    const wxColour& GetLinkColour() const { return m_linkColour; }
    void SetLinkColour(const wxColour& colour);

    /// The colour of a link that has been followed.
    const wxColour& GetVisitedColour() const { return m_visitedColour; }
    void SetVisitedColour(const wxColour& colour);

protected:
    wxSize DoGetBestSize() const override { return {m_textWidth, m_textHeight}; }

private:
    void OnPress(wxMouseEvent& event);
    void OnEnter(wxMouseEvent& event);
    void OnLeave(wxMouseEvent& event);
    void OnKey(wxKeyEvent& event);
    void OnFocus(wxFocusEvent& event);
    void OnPaint(wxPaintEvent& event);

    void Measure();
    void Recolour(const wxColour& colour);
    void Follow();

    wxString m_label;
    bool m_visited = false;
    wxCursor m_linkCursor{wxCURSOR_HAND};
    wxColour m_hoverColour{"RED"};
    wxColour m_linkColour{"BLUE"};
    wxColour m_visitedColour{"PURPLE"};
    wxColour m_normalBackground;
    int m_textWidth = 0;
    int m_textHeight = 0;

    wxDECLARE_DYNAMIC_CLASS(lsHyperlinkCtrl);
    wxDECLARE_EVENT_TABLE();
};

} // namespace LS::Widgets

/// For event tables: the handler takes an lsHyperlinkEvent&.
#define EVT_LSHYPERLINK(id, func)                                                                            \
    wx__DECLARE_EVT1(LS::Widgets::lsEVT_HYPERLINK, id,                                                       \
                     wxEVENT_HANDLER_CAST(LS::Widgets::lsHyperlinkEventFunction, func))
