// The folder of camera response curves.
#pragma once

#include <wx/arrstr.h>
#include <wx/string.h>

/// Where a saved curve lies. @param name  with its extension
wxString CurvePath(const wxString& name);

/// The names of all saved curves, with extension, in the order in which the folder tells them.
wxArrayString SavedCurveNames();

/// Whether a name can be that of a curve in the folder: it has something in it, and no character that names
/// of files may not have.
bool IsCurveName(const wxString& name);
