// The dialog with the options of TIFF files.
#pragma once

#include <wx/dialog.h>

class wxChoice;
class wxSizer;

/// Two lists and no logic: the caller selects the current values before ShowModal, and reads both lists after
/// wxID_OK.
class TiffOptionsDlg : public wxDialog {
public:
    TiffOptionsDlg(wxWindow* parent, wxWindowID id, const wxString& title,
                   const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxDefaultSize,
                   long style = wxCAPTION | wxTAB_TRAVERSAL | wxCLOSE_BOX | wxSYSTEM_MENU | wxRESIZE_BORDER);

    wxChoice* m_bitDepthChoice = nullptr;    ///< bits per channel: 8 only
    wxChoice* m_compressionChoice = nullptr; ///< none, Deflate, Packbits; the position is the stored value

private:
    void CreateControls();
    wxSizer* CreateButtons();
};
