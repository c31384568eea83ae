// Two views of one crop, and the slider between them and the encoder.
#include "Widgets/JPEGCompressionSettings.h"

#include "Widgets/CropView.h"
#include "Widgets/JpegRoundTrip.h"
#include "Widgets/lsJpegCQCtrl.h"

#include <wx/button.h>
#include <wx/intl.h>
#include <wx/sizer.h>
#include <wx/slider.h>
#include <wx/statbox.h>

#include <utility>

using LS::Widgets::lsJpegCQCtrl;
using LS::Widgets::lsMoveJpegEvent;

namespace {

constexpr int ID_SLIDER = 6029;
constexpr int ID_ORIGINAL = 6030;
constexpr int ID_COMPRESSED = 6031;

constexpr int BORDER = 5;

/// Adds a view in a labelled box to the row.
lsJpegCQCtrl* AddView(wxWindow* dialog, wxSizer* row, wxWindowID id, const wxString& label)
{
    auto* box = new wxStaticBoxSizer(wxHORIZONTAL, dialog, label);
    row->Add(box, wxSizerFlags().CentreVertical().Border(wxALL, BORDER));
    auto* view = new lsJpegCQCtrl(box->GetStaticBox(), id, wxDefaultPosition, wxSize(VIEW_SIDE, VIEW_SIDE),
                                  wxBORDER_NONE);
    box->Add(view, wxSizerFlags().CentreVertical().Border(wxALL, BORDER));
    return view;
}

} // namespace

// clang-format off
wxBEGIN_EVENT_TABLE(JPEGCompressionSettings, wxDialog)
    EVT_COMMAND_SCROLL(ID_SLIDER, JPEGCompressionSettings::OnScroll)
    EVT_MOVE_JPEG(ID_ORIGINAL, JPEGCompressionSettings::OnMoveJpeg)
    EVT_MOVE_JPEG(ID_COMPRESSED, JPEGCompressionSettings::OnMoveJpeg)
wxEND_EVENT_TABLE()
// clang-format on

JPEGCompressionSettings::JPEGCompressionSettings(wxWindow* parent, wxWindowID id, const wxString& title,
                                                 const wxPoint& pos, const wxSize& size, long style)
{
    SetExtraStyle(wxWS_EX_BLOCK_EVENTS);
    Create(parent, id, title, pos, size, style, wxDialogNameStr);
    CreateControls();
    Refresh();
    GetSizer()->SetSizeHints(this);
    Centre(wxBOTH);
}

void JPEGCompressionSettings::CreateControls()
{
    auto* top = new wxBoxSizer(wxVERTICAL);
    SetSizer(top);
    top->Add(CreateViews(), wxSizerFlags().CentreHorizontal().Border(wxALL, BORDER));
    top->Add(CreateSliderRow(), wxSizerFlags().Expand().Border(wxALL, BORDER));
}

wxSizer* JPEGCompressionSettings::CreateViews()
{
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    m_originalCtrl = AddView(this, row, ID_ORIGINAL, _("Original Image"));
    m_compressedCtrl = AddView(this, row, ID_COMPRESSED, _("Compressed Image"));
    return row;
}

wxSizer* JPEGCompressionSettings::CreateSliderRow()
{
    auto* row = new wxBoxSizer(wxHORIZONTAL);

    auto* left = new wxBoxSizer(wxHORIZONTAL);
    row->Add(left, wxSizerFlags().CentreVertical().Border(wxLEFT | wxRIGHT, BORDER));
    m_slider = new wxSlider(this, ID_SLIDER, 0, 0, 100, wxDefaultPosition, wxSize(300, wxDefaultCoord),
                            wxSL_HORIZONTAL | wxSL_AUTOTICKS | wxSL_LABELS | wxSL_BOTTOM);
    left->Add(m_slider, wxSizerFlags().CentreVertical().Border(wxALL, BORDER));

    row->AddStretchSpacer(); // keeps the buttons at the right edge
    auto* right = new wxBoxSizer(wxHORIZONTAL);
    row->Add(right, wxSizerFlags().CentreVertical().Border(wxALL, BORDER));
    auto* buttons = new wxBoxSizer(wxVERTICAL);
    right->Add(buttons, wxSizerFlags().CentreVertical().Border(wxALL, BORDER));
    auto* ok = new wxButton(this, wxID_OK, _("&OK"));
    buttons->Add(ok, wxSizerFlags().Right().Border(wxALL, BORDER));
    buttons->Add(new wxButton(this, wxID_CANCEL, _("&Cancel")), wxSizerFlags().Right().Border(wxALL, BORDER));
    ok->SetDefault();
    return row;
}

void JPEGCompressionSettings::SetImage(wxImage image, int quality)
{
    if (!image.IsOk())
        return;
    m_source = std::move(image);
    for (lsJpegCQCtrl* view : {m_originalCtrl, m_compressedCtrl})
        view->SetImageSize(m_source.GetWidth(), m_source.GetHeight());
    m_viewRect = CentredCrop(m_source.GetSize(), m_originalCtrl->Side());
    m_cropped = m_source.GetSubImage(m_viewRect);
    m_slider->SetValue(quality);
    ShowCompressed(quality);
    m_originalCtrl->SetBitmap(m_cropped);
}

void JPEGCompressionSettings::OnScroll(wxScrollEvent&)
{
    if (m_source.IsOk())
        ShowCompressed(m_slider->GetValue());
}

void JPEGCompressionSettings::OnMoveJpeg(lsMoveJpegEvent& event)
{
    const wxRect moved(event.GetPosition(), m_viewRect.GetSize());
    if (!m_source.IsOk() || !wxRect(m_source.GetSize()).Contains(moved))
        return; // no view sends this, but events can be made
    m_viewRect = moved;
    m_cropped = m_source.GetSubImage(m_viewRect);
    m_originalCtrl->SetBitmap(m_cropped);
    ShowCompressed(m_slider->GetValue());
}

/// Sends the crop through the encoder. Where that fails the view keeps what it shows.
void JPEGCompressionSettings::ShowCompressed(int quality)
{
    m_jpeg = m_cropped;
    m_jpeg.SetOption(wxIMAGE_OPTION_QUALITY, quality);
    m_compressedCtrl->SetBitmap(JpegRoundTrip(m_jpeg));
}
