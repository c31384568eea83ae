// The question before a file is replaced.
#pragma once

#include <wx/string.h>

class wxWindow;

/// Whether a file may be written: nothing is in its place, or the user agrees to replace it. Only Yes agrees;
/// a box that is closed in any other way is a No. A folder isn't asked about.
/// @param question  as it shall be read, with %s in the place of the path
/// @param icon      wxICON_QUESTION, or wxICON_ERROR for a warning
bool MayBeWritten(wxWindow* parent, const wxString& path, wxString question, long icon);
