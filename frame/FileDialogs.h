// The questions for files that the main window asks.
#pragma once

#include <functional>
#include <optional>

#include <wx/arrstr.h>
#include <wx/string.h>

class wxWindow;

/// Asks for photographs. @param folder  where to begin  @return nothing if the user thought better of it
std::optional<wxArrayString> AskForImages(const wxString& folder);

/// Takes the place of that question, for tests: the dialog lets nobody choose several files by program.
/// An empty function brings the dialog back.
using ImageAnswer = std::function<std::optional<wxArrayString>(const wxString& folder)>;
void AnswerForImages(ImageAnswer answer);

struct HdrFileChoice {
    wxString path;
    int nFormat; ///< as SaveHDRFile counts: OpenEXR, Radiance RGBE, floating point TIFF
};

/// Asks where to save the merged image and in which format, and whether an existing file may be replaced.
std::optional<HdrFileChoice> AskForHdrFile(wxWindow* parent, const wxString& folder);
