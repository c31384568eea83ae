// Finds the window that paints behind a control.
#include "Widgets/Background.h"

#include <wx/brush.h>
#include <wx/dc.h>
#include <wx/window.h>

namespace LS::Widgets {

void PaintBackground(wxDC& dc, const wxWindow& control)
{
    // A panel in the theme's colours paints nothing, and what it names as its colour isn't what is seen.
    const wxWindow* painter = &control;
    while (!painter->IsTopLevel() && !painter->UseBackgroundColour())
        painter = painter->GetParent();
    dc.SetBackground(painter->GetBackgroundColour());
    dc.Clear();
}

} // namespace LS::Widgets
