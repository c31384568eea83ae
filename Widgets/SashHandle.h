// The handle on the sash of a vertical split, and what it does to the second pane.
#pragma once

#include <wx/gdicmn.h>
#include <wx/image.h>

#include <utility>

/// The size of the handle's pictures.
constexpr int SASH_HANDLE_WIDTH = 7;
constexpr int SASH_HANDLE_HEIGHT = 63;

/// The picture of the handle, its arrow pointing where the second pane will go: to the right, out of sight,
/// while the pane is expanded.
wxImage SashHandleImage(bool expanded);

/// Where the handle stands in a splitter of this client height.
wxRect SashHandleRect(int sashPosition, int clientHeight, wxSize handle);

/// What the handle changes. The second pane is as wide as the minimum pane size after each click.
struct SashPane {
    bool expanded = true;
    int minimumSize = 0;
    int savedSize = 0; ///< the minimum pane size before the collapse

    bool operator==(const SashPane&) const = default;
};

/// The pane after a click on its handle: collapsed to one pixel, or back at the minimum size that it had.
SashPane Toggled(SashPane pane);

/// Whether a pane counts as expanded after its sash has been dragged.
bool IsExpandedAfterDrag(int minimumSize);

/// The ends of the line that follows the pointer while a sash is dragged, in client coordinates.
std::pair<wxPoint, wxPoint> SashTrackerLine(bool vertical, wxPoint pointer, wxSize client);
