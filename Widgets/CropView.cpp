// Where the crop of the compare views lies in its picture.
#include "Widgets/CropView.h"

#include <algorithm>

namespace {

int Dragged(int origin, int moved, int room)
{
    const int target = origin - moved;
    return 0 <= target && target <= room ? target : origin;
}

} // namespace

wxRect CentredCrop(wxSize picture, int nSide)
{
    return {std::max((picture.x - nSide) / 2, 0), std::max((picture.y - nSide) / 2, 0),
            std::min(picture.x, nSide), std::min(picture.y, nSide)};
}

wxPoint DraggedOrigin(wxPoint origin, wxPoint from, wxPoint to, wxSize picture, int nSide)
{
    return {Dragged(origin.x, to.x - from.x, picture.x - nSide),
            Dragged(origin.y, to.y - from.y, picture.y - nSide)};
}
