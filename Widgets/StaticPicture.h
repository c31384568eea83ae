// A control that shows a picture.
#pragma once

#include <wx/bitmap.h>
#include <wx/control.h>

namespace LS::Widgets {

/// Shows a picture in its middle and shrinks what it is given to fit.
class lsStaticPicture : public wxControl {
public:
    lsStaticPicture() = default;
    /// @param bitmap  the first picture, shown at its own size; may be the null bitmap. A default width or
    ///                height of the control becomes that of the bitmap.
    lsStaticPicture(wxWindow* parent, wxWindowID id, const wxBitmap& bitmap,
                    const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxDefaultSize,
                    long style = 0, const wxString& name = "staticPicture");
    bool Create(wxWindow* parent, wxWindowID id, const wxBitmap& bitmap,
                const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxDefaultSize, long style = 0,
                const wxString& name = "staticPicture");

    /// Shows a picture at its own size, or shrunk to the present client size where it is larger. The image is
    /// copied; null or an invalid one empties the control.
    void SetImage(const wxImage* image);

    bool AcceptsFocus() const override { return false; }

private:
    void OnPaint(wxPaintEvent& event);

    wxBitmap m_bitmap;

    wxDECLARE_DYNAMIC_CLASS(lsStaticPicture);
    wxDECLARE_EVENT_TABLE();
};

} // namespace LS::Widgets
