// How large a picture is shown in a window.
#pragma once

#include <wx/gdicmn.h>

/// The size at which a picture is shown: its own if that fits, else shrunk with its aspect ratio kept, both
/// truncated to whole pixels. A picture is never enlarged.
/// @return 0 x 0 if nothing of it can be shown
wxSize FittedSize(wxSize picture, wxSize window);
