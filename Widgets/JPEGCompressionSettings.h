// The dialog in which the user chooses a JPEG quality and sees what it does to the picture.
#pragma once

#include <wx/dialog.h>
#include <wx/image.h>

class wxSizer;
class wxSlider;

namespace LS::Widgets {
class lsJpegCQCtrl;
class lsMoveJpegEvent;
} // namespace LS::Widgets

/// Shows the same crop of a picture twice, untouched and after a JPEG encode and decode at the slider's
/// quality. A drag in either view moves the crop in both. After wxID_OK the caller reads the slider.
class JPEGCompressionSettings : public wxDialog {
public:
    /// The size is a proposal: the controls decide.
    JPEGCompressionSettings(wxWindow* parent, wxWindowID id, const wxString& title,
                            const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxSize(400, 600),
                            long style = wxCAPTION | wxTAB_TRAVERSAL | wxCLOSE_BOX | wxSYSTEM_MENU);

    /// Takes the picture and the quality, 0 to 100, to start with; called once, before ShowModal. An invalid
    /// picture changes nothing.
    void SetImage(wxImage image, int quality);

private:
    LS::Widgets::lsJpegCQCtrl* m_originalCtrl = nullptr;
    LS::Widgets::lsJpegCQCtrl* m_compressedCtrl = nullptr;

public:
    wxSlider* m_slider = nullptr; ///< the quality

private:
    void CreateControls();
    wxSizer* CreateViews();
    wxSizer* CreateSliderRow();

    void OnScroll(wxScrollEvent& event);
    void OnMoveJpeg(LS::Widgets::lsMoveJpegEvent& event);

    void ShowCompressed(int quality);

    wxImage m_source;  // the whole picture
    wxImage m_cropped; // the crop as it is
    wxImage m_jpeg;    // the crop that goes to the encoder
    wxRect m_viewRect; // the crop within m_source

    wxDECLARE_EVENT_TABLE();
};
