// Draws the handle's pictures and does the arithmetic of collapsing.
#include "Widgets/SashHandle.h"

#include <algorithm>
#include <array>

namespace {

constexpr int COLLAPSED_SIZE = 1;

constexpr std::array<unsigned, SASH_HANDLE_WIDTH> HANDLE_ROW = {0x75919C, 0xBBC9D7, 0xACC0D0, 0x9AB7C6,
                                                                0xACC0D0, 0xBBC9D7, 0x75919C};
constexpr std::array<int, 7> TRIANGLE = {1, 2, 3, 4, 3, 2, 1}; // pixels a row
constexpr int TRIANGLE_TOP = 28;
constexpr int TRIANGLE_LEFT = 2;  // where the rows begin that point right
constexpr int TRIANGLE_RIGHT = 4; // and where those end that point left

} // namespace

wxImage SashHandleImage(bool expanded)
{
    wxImage image(SASH_HANDLE_WIDTH, SASH_HANDLE_HEIGHT);
    for (int x = 0; x < SASH_HANDLE_WIDTH; ++x) {
        const unsigned rgb = HANDLE_ROW[static_cast<std::size_t>(x)];
        image.SetRGB(wxRect(x, 0, 1, SASH_HANDLE_HEIGHT), static_cast<unsigned char>(rgb >> 16),
                     static_cast<unsigned char>(rgb >> 8), static_cast<unsigned char>(rgb));
    }
    int y = TRIANGLE_TOP;
    for (const int count : TRIANGLE) {
        const int x = expanded ? TRIANGLE_LEFT : TRIANGLE_RIGHT - count + 1;
        image.SetRGB(wxRect(x, y++, count, 1), 0xFF, 0xFF, 0xFF);
    }
    return image;
}

wxRect SashHandleRect(int sashPosition, int clientHeight, wxSize handle)
{
    return {wxPoint(sashPosition, (clientHeight - handle.y) / 2), handle};
}

SashPane Toggled(SashPane pane)
{
    if (pane.expanded)
        return {false, COLLAPSED_SIZE, pane.minimumSize};
    return {true, pane.savedSize, pane.savedSize};
}

bool IsExpandedAfterDrag(int minimumSize)
{
    return minimumSize > COLLAPSED_SIZE;
}

std::pair<wxPoint, wxPoint> SashTrackerLine(bool vertical, wxPoint pointer, wxSize client)
{
    if (vertical) {
        const int x = std::clamp(pointer.x, 0, client.x);
        return {{x, 2}, {x, client.y - 2}};
    }
    const int y = std::clamp(pointer.y, 0, client.y);
    return {{2, y}, {client.x - 2, y}};
}
