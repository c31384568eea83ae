// The dialog that asks where and how to save the result as an ordinary picture.
#pragma once

#include "Widgets/SaveProposal.h"

#include <wx/dialog.h>
#include <wx/string.h>

class wxChoice;
class wxDirPickerCtrl;
class wxImage;
class wxSizer;
class wxTextCtrl;

namespace LS::Widgets {
class lsHyperlinkCtrl;
class lsHyperlinkEvent;
} // namespace LS::Widgets

/// Collects and checks the answers, and makes the folder; the caller writes the file.
///
/// It opens with the settings of Config. ShowModal gives wxID_OK only when the path is valid, its folder
/// exists and the user agrees to replace a file of that name; then the folder goes into the settings, and the
/// next dialog proposes the next number. Nothing else is stored.
class SaveHDRImageDlg : public wxDialog {
public:
    /// @param image  for the preview of the JPEG quality; stays the caller's, may be null
    SaveHDRImageDlg(wxWindow* parent, wxImage* image, wxWindowID id, const wxString& title,
                    const wxPoint& pos = wxDefaultPosition, const wxSize& size = wxDefaultSize,
                    long style = wxCAPTION | wxTAB_TRAVERSAL | wxCLOSE_BOX | wxSYSTEM_MENU | wxRESIZE_BORDER);

private:
    LS::Widgets::lsHyperlinkCtrl* m_hyperlink = nullptr;
    wxChoice* m_formatChoice = nullptr;
    wxTextCtrl* m_fileNameText = nullptr;
    wxDirPickerCtrl* m_dirPicker = nullptr;
    wxImage* m_image;

public:
    // The answers, valid after wxID_OK.
    wxString m_format; ///< a text of SAVE_FORMATS, or another one out of the settings
    wxString m_path;   ///< full path of the file
    int m_quality;     ///< of a JPEG, 0 to 100
    int m_bits;        ///< of a TIFF, per channel: 8 or 16
    int m_compression; ///< of a TIFF, the position in the list of TiffOptionsDlg

private:
    void CreateControls();
    void CreateFormatRows(wxSizer* grid);
    void CreatePathRows(wxSizer* grid);
    wxSizer* CreateButtons();

    void OnFormat(wxCommandEvent& event);
    void OnHyperlink(LS::Widgets::lsHyperlinkEvent& event);
    void OnEnterFileName(wxMouseEvent& event);
    void OnSave(wxCommandEvent& event);

    const SaveFormat* Selected() const;
    wxString FileName() const;
    wxString CurrentLinkText(LinkMoment moment) const;
    void ShowLink(const wxString& text);
    void SelectStem();
    void AskQuality();
    void AskTiffOptions();
    bool TakePath();

    wxDECLARE_EVENT_TABLE();
};
