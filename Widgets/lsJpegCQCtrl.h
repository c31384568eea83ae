// One of the two views that compare a picture with its JPEG version.
#pragma once

#include <wx/bitmap.h>
#include <wx/cursor.h>
#include <wx/event.h>
#include <wx/image.h>
#include <wx/window.h>

#include <memory>

namespace LS::Widgets {

/// Tells that a drag in a view moved the crop, or tried to.
class lsMoveJpegEvent : public wxCommandEvent {
public:
    explicit lsMoveJpegEvent(wxEventType type = wxEVT_NULL, int id = 0) : wxCommandEvent(type, id) {}

    /// The top left corner of the crop within the picture.
    void SetPosition(const wxPoint& pos) { m_pos = pos; }
    wxPoint GetPosition() const { return m_pos; }

    wxEvent* Clone() const override { return new lsMoveJpegEvent(*this); }

private:
    wxPoint m_pos;
};

wxDECLARE_EVENT(lsEVT_MOVE_JPEG, lsMoveJpegEvent);
using lsMoveJpegEventFunction = void (wxEvtHandler::*)(lsMoveJpegEvent&);

/// Shows a crop that its owner gives it, and lets the user drag the crop about in the picture. It knows the
/// crop's place only: at every motion of a drag it sends lsEVT_MOVE_JPEG, and its owner gives it the new
/// crop.
class lsJpegCQCtrl : public wxWindow {
public:
    lsJpegCQCtrl(wxWindow* parent, wxWindowID id, const wxPoint& pos, const wxSize& size, long style);
    ~lsJpegCQCtrl() override;
    lsJpegCQCtrl(const lsJpegCQCtrl&) = delete;
    lsJpegCQCtrl& operator=(const lsJpegCQCtrl&) = delete;

    /// Sets the size of the whole picture, and puts the crop of all views in its middle.
    void SetImageSize(int w, int h);

    /// The side of the crop in pixels of the picture: each has one of the display.
    int Side() const;

    /// Sets what the view shows.
    /// @return whether the image was valid; an invalid one changes nothing
    bool SetBitmap(const wxImage& image);

    /// The keyboard has nothing to do here, so it passes the view by.
    bool AcceptsFocus() const override { return false; }

private:
    void OnPaint(wxPaintEvent& event);
    void OnEraseBackground(wxEraseEvent& event);
    void OnLeftDown(wxMouseEvent& event);
    void OnLeftUp(wxMouseEvent& event);
    void OnMotion(wxMouseEvent& event);
    void OnCaptureLost(wxMouseCaptureLostEvent& event);

    void EndDrag();

    wxSize m_imageSize;
    wxCursor m_cursorOpen;
    wxCursor m_cursorClosed;
    std::unique_ptr<wxBitmap> m_bitmap;
    wxPoint m_lastPos;
    bool m_dragging = false;

    /// One for all views: those of a dialog always show the same crop, and there is one dialog at a time.
    static wxPoint s_origin;

    wxDECLARE_EVENT_TABLE();
};

} // namespace LS::Widgets

/// Static event table entry for the moves of a view; func takes an LS::Widgets::lsMoveJpegEvent&.
#define EVT_MOVE_JPEG(id, func)                                                                              \
    wx__DECLARE_EVT1(LS::Widgets::lsEVT_MOVE_JPEG, id,                                                       \
                     wxEVENT_HANDLER_CAST(LS::Widgets::lsMoveJpegEventFunction, func))
