// The questions for files that the main window asks.
#pragma once

#include <optional>

#include <wx/arrstr.h>
#include <wx/string.h>

class wxWindow;

/// Asks for photographs. @param folder  where to begin  @return nothing if the user thought better of it
std::optional<wxArrayString> AskForImages(const wxString& folder);

struct HdrFileChoice {
    wxString path;
    int nFormat; ///< as SaveHDRFile counts: OpenEXR, Radiance RGBE, floating point TIFF
};

/// Asks where to save the merged image and in which format, and whether an existing file may be replaced. A
/// name without extension gets that of the format.
std::optional<HdrFileChoice> AskForHdrFile(wxWindow* parent, const wxString& folder);
