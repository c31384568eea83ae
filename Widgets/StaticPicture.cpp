// Shrinks and paints pictures.
#include "Widgets/StaticPicture.h"

#include "Widgets/PictureFit.h"

#include <wx/dcclient.h>
#include <wx/image.h>

#include <algorithm>

namespace LS::Widgets {

namespace {

/// A picture that is shown at a size, with as many of its pixels as the display has there.
wxBitmap SharpBitmap(const wxImage& image, wxSize shown, double dScale)
{
    wxSize pixels = shown * dScale;
    pixels.DecTo(image.GetSize());
    const wxImage scaled =
        pixels == image.GetSize() ? image : image.Scale(pixels.x, pixels.y, wxIMAGE_QUALITY_NORMAL);
    return {scaled, wxBITMAP_SCREEN_DEPTH, static_cast<double>(pixels.x) / shown.x};
}

} // namespace

wxIMPLEMENT_DYNAMIC_CLASS(lsStaticPicture, wxControl);

// clang-format off
wxBEGIN_EVENT_TABLE(lsStaticPicture, wxControl)
    EVT_PAINT(lsStaticPicture::OnPaint)
wxEND_EVENT_TABLE()
// clang-format on

lsStaticPicture::lsStaticPicture(wxWindow* parent, wxWindowID id, const wxBitmap& bitmap, const wxPoint& pos,
                                 const wxSize& size, long style, const wxString& name)
{
    Create(parent, id, bitmap, pos, size, style, name);
}

bool lsStaticPicture::Create(wxWindow* parent, wxWindowID id, const wxBitmap& bitmap, const wxPoint& pos,
                             const wxSize& size, long style, const wxString& name)
{
    if (!wxControl::Create(parent, id, pos, size, style, wxDefaultValidator, name))
        return false;
    m_bitmap = bitmap;
    wxSize initial = size;
    if (m_bitmap.IsOk())
        initial.SetDefaults(m_bitmap.GetLogicalSize());
    SetInitialSize(initial);
    return true;
}

void lsStaticPicture::SetImage(const wxImage* image)
{
    m_bitmap = wxNullBitmap;
    if (image != nullptr && image->IsOk()) {
        const wxSize shown = FittedSize(image->GetSize(), GetClientSize());
        if (shown.x > 0 && shown.y > 0) // a very long and thin one may vanish
            m_bitmap = SharpBitmap(*image, shown, GetContentScaleFactor());
    }
    Refresh();
}

void lsStaticPicture::OnPaint(wxPaintEvent&)
{
    wxPaintDC dc(this);
    PrepareDC(dc);
    if (!m_bitmap.IsOk())
        return;
    const wxSize room = GetClientSize() - m_bitmap.GetLogicalSize();
    dc.DrawBitmap(m_bitmap, std::max(room.x, 0) / 2, std::max(room.y, 0) / 2, true);
}

} // namespace LS::Widgets
