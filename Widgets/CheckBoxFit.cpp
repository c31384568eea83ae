// Shrinks and aligns check boxes.
#include "Widgets/CheckBoxFit.h"

#include <algorithm>
#include <optional>

namespace {

std::optional<int> AlignedX(wxRect cell, int width, int horizontalAlignment)
{
    switch (horizontalAlignment) {
    case wxALIGN_CENTRE:
    case wxALIGN_CENTRE_HORIZONTAL:
        return cell.x + cell.width / 2 - width / 2;
    case wxALIGN_LEFT:
        return cell.x + 2;
    case wxALIGN_RIGHT:
        return cell.x + cell.width - width - 2;
    default:
        return std::nullopt;
    }
}

} // namespace

wxRect CheckBoxRect(wxRect cell, wxSize best, int horizontalAlignment)
{
    const int shorter = std::min(cell.width, cell.height);
    const bool fits = best.x < shorter && best.y < shorter;
    const wxSize size = fits ? best : wxSize(shorter - 2, shorter - 2);
    const auto x = AlignedX(cell, size.x, horizontalAlignment);
    if (!x || size.x <= 2 || size.y <= 2)
        return {};
    wxRect box(wxPoint(*x, cell.y + cell.height / 2 - size.y / 2), size);
    box.Deflate(1);
    box.Offset(1, 1);
    return box;
}
