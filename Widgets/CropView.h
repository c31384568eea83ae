// The square crop of a picture that the compare views show, and how a drag moves it.
#pragma once

#include <wx/gdicmn.h>

/// The side of the compare views. Their crop is as many pixels wide, or twice as many on a display of
/// scale 2.
constexpr int VIEW_SIDE = 180;

/// The crop in the middle of a picture. A picture smaller than a view gives all that it has in that
/// direction.
/// @param nSide  of a view, in pixels of the picture
wxRect CentredCrop(wxSize picture, int nSide = VIEW_SIDE);

/// The top left corner of the crop after one step of a drag: the picture follows the hand, so the crop moves
/// against it. In a direction in which the crop would leave the picture the step is dropped, not shortened,
/// so a picture no larger than a view never moves.
/// @param origin    the corner before the step
/// @param from, to  the pointer before and after the step, in pixels of the picture as is nSide
wxPoint DraggedOrigin(wxPoint origin, wxPoint from, wxPoint to, wxSize picture, int nSide = VIEW_SIDE);
