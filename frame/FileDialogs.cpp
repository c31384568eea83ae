// The questions for files that the main window asks.
#include "frame/FileDialogs.h"

#include "Widgets/ReplaceQuestion.h"
#include "Widgets/SaveProposal.h"

#include <array>
#include <span>

#include <wx/filedlg.h>
#include <wx/intl.h>
#include <wx/wxcrt.h>

namespace {

/// An entry in a dialog's list of formats.
struct FileKind {
    const char* szText;
    std::array<const char*, 2>
        aszExtensions; ///< in lower case; a name gets the first one, the other may be null
};

constexpr std::array<FileKind, 2> IMAGES{{
    {"JPEG Image Format (*.jpeg;*.jpg)", {"jpeg", "jpg"}},
    {"Tiff Image Format (*.tiff; *.tif)", {"tiff", "tif"}},
}};

constexpr std::array<FileKind, 3> HDR_FILES{{
    {"OpenEXR (*.exr)", {"exr"}},
    {"Radiance RGBE (*.hdr)", {"hdr"}},
    {"Floating Point Tiff (*.tiff, *.tif)", {"tiff", "tif"}},
}};

/// Matches names with an extension in whatever case; the toolkit tells .jpg from .JPG.
wxString Pattern(const wxString& extension)
{
    wxString pattern = "*.";
    for (const wxUniChar c : extension)
        pattern << '[' << c << wxUniChar(wxToupper(c)) << ']';
    return pattern;
}

/// The list of formats as the library's dialogs take it.
wxString Wildcard(std::span<const FileKind> kinds)
{
    wxString wildcard;
    for (const FileKind& kind : kinds) {
        wxString patterns;
        for (const char* const szExtension : kind.aszExtensions)
            if (szExtension)
                patterns << (patterns.empty() ? "" : ";") << Pattern(szExtension);
        wildcard << (wildcard.empty() ? "" : "|") << kind.szText << "|" << patterns;
    }
    return wildcard;
}

HdrFileChoice ChoiceOf(const wxFileDialog& dialog)
{
    const int nFormat = dialog.GetFilterIndex();
    const FileKind& kind = HDR_FILES.at(static_cast<std::size_t>(nFormat));
    return {WithSomeExtension(dialog.GetPath(), kind.aszExtensions.front()), nFormat};
}

} // namespace

std::optional<wxArrayString> AskForImages(const wxString& folder)
{
    wxFileDialog dialog(nullptr, wxGetTranslation("Open Images"), folder, wxEmptyString, Wildcard(IMAGES),
                        wxFD_OPEN | wxFD_FILE_MUST_EXIST | wxFD_MULTIPLE | wxFD_PREVIEW, wxDefaultPosition,
                        wxDefaultSize, "filedlg");
    dialog.Centre(wxBOTH);
    if (dialog.ShowModal() != wxID_OK)
        return std::nullopt;
    wxArrayString paths;
    dialog.GetPaths(paths);
    return paths;
}

std::optional<HdrFileChoice> AskForHdrFile(wxWindow* parent, const wxString& folder)
{
    wxFileDialog dialog(parent, wxGetTranslation("Save Image"), folder, wxEmptyString, Wildcard(HDR_FILES),
                        wxFD_SAVE, wxDefaultPosition, wxDefaultSize, "filedlg");
    dialog.SetFilterIndex(0);
    // The toolkit's own question would be about the name as it was typed. After a No the dialog stays.
    const auto AskToReplace = [&dialog](wxCommandEvent& event) {
        event.Skip(
            MayBeWritten(&dialog, ChoiceOf(dialog).path,
                         wxGetTranslation("#0002002 File %s already exists, would you like to replace it? "),
                         wxICON_ERROR));
    };
    dialog.Bind(wxEVT_BUTTON, AskToReplace, wxID_OK);
    if (dialog.ShowModal() != wxID_OK)
        return std::nullopt;
    return ChoiceOf(dialog);
}
