// Message boxes of the main window.
#pragma once

#include <wx/string.h>

/// Shows a box with the program's caption. @param text  as it shall be read, translated where it is to be
/// @return wxYES, wxNO, wxCANCEL or wxOK
int ShowMessage(const wxString& text, long style);

/// An error, to be read and closed.
void ShowError(const wxString& text);
