// The form in which paths are handed to the program: a leading word, "|", and paths separated by "|".
#pragma once

#include <wx/arrstr.h>
#include <wx/string.h>

/// The paths of a file argument such as "add|/a.jpg|/b.jpg"; none without "|". An empty path in the middle
/// stays, a "|" at the end adds nothing.
wxArrayString PathsOfFileArgument(const wxString& argument);
