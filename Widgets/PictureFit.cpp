// Shrinks sizes, never enlarges them.
#include "Widgets/PictureFit.h"

#include <algorithm>

wxSize FittedSize(wxSize picture, wxSize window)
{
    const double dScaleX = static_cast<double>(window.x) / picture.x;
    const double dScaleY = static_cast<double>(window.y) / picture.y;
    if (dScaleX >= 1 && dScaleY >= 1)
        return picture;
    double dScale = std::min(dScaleX, dScaleY);
    if (dScale == 0) // a window without height or width
        dScale = std::max(dScaleX, dScaleY);
    if (dScale <= 0)
        return {0, 0};
    return {static_cast<int>(picture.x * dScale), static_cast<int>(picture.y * dScale)};
}
