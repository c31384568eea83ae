// The questions for files that the main window asks.
#include "frame/FileDialogs.h"

#include <utility>

#include <wx/filedlg.h>
#include <wx/intl.h>

namespace {

ImageAnswer& ReplacedAnswer()
{
    static ImageAnswer answer;
    return answer;
}

} // namespace

std::optional<wxArrayString> AskForImages(const wxString& folder)
{
    if (ReplacedAnswer())
        return ReplacedAnswer()(folder);
    wxFileDialog dialog(nullptr, wxGetTranslation("Open Images"), folder, wxEmptyString,
                        "JPEG Image Format (*.jpeg;*.jpg)|*.jpeg;*.jpg|"
                        "Tiff Image Format (*.tiff; *.tif)|*.tiff; *.tif",
                        wxFD_OPEN | wxFD_FILE_MUST_EXIST | wxFD_MULTIPLE | wxFD_PREVIEW, wxDefaultPosition,
                        wxDefaultSize, "filedlg");
    dialog.Centre(wxBOTH);
    if (dialog.ShowModal() != wxID_OK)
        return std::nullopt;
    wxArrayString paths;
    dialog.GetPaths(paths);
    return paths;
}

void AnswerForImages(ImageAnswer answer)
{
    ReplacedAnswer() = std::move(answer);
}

std::optional<HdrFileChoice> AskForHdrFile(wxWindow* parent, const wxString& folder)
{
    wxFileDialog dialog(parent, wxGetTranslation("Save Image"), folder, wxEmptyString,
                        "OpenEXR (*.exr)|*.exr|Radiance RGBE (*.hdr)|*.hdr|"
                        "Floating Point Tiff (*.tiff, *.tif)|*.tiff;*.tif",
                        wxFD_SAVE | wxFD_OVERWRITE_PROMPT, wxDefaultPosition, wxDefaultSize, "filedlg");
    dialog.SetFilterIndex(0);
    if (dialog.ShowModal() != wxID_OK)
        return std::nullopt;
    return HdrFileChoice{dialog.GetPath(), dialog.GetFilterIndex()};
}
