// Where a check box stands in a grid cell.
#pragma once

#include <wx/gdicmn.h>

/// The rectangle of a check box in a cell: at its best size where that leaves a margin, else at the shorter
/// side of the cell less 2, vertically centred.
/// @param horizontalAlignment  wxALIGN_LEFT, wxALIGN_RIGHT, or a centred one
/// @return an empty rectangle for any other alignment and for a cell that has no room
wxRect CheckBoxRect(wxRect cell, wxSize best, int horizontalAlignment);
