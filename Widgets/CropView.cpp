// Where the crop of the compare views lies in its picture.
#include "Widgets/CropView.h"

#include <algorithm>

namespace {

int Dragged(int origin, int moved, int side)
{
    const int target = origin - moved;
    return 0 <= target && target <= side - VIEW_SIDE ? target : origin;
}

} // namespace

wxRect CentredCrop(wxSize picture)
{
    return {std::max((picture.x - VIEW_SIDE) / 2, 0), std::max((picture.y - VIEW_SIDE) / 2, 0),
            std::min(picture.x, VIEW_SIDE), std::min(picture.y, VIEW_SIDE)};
}

wxPoint DraggedOrigin(wxPoint origin, wxPoint from, wxPoint to, wxSize picture)
{
    return {Dragged(origin.x, to.x - from.x, picture.x), Dragged(origin.y, to.y - from.y, picture.y)};
}
