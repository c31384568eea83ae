// The cursors over a picture that can be dragged.
#pragma once

#include <wx/cursor.h>

enum class Grip { Open, Closed };

/// An open hand for a picture at rest, a gripping one while it is dragged; both point with their middle.
wxCursor HandCursor(Grip grip);
