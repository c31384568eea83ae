// The picture of a button that can't be pressed.
#pragma once

#include <wx/colour.h>
#include <wx/image.h>

namespace LS::Widgets {

/// A copy with every second pixel painted over in a chequer that begins at the top left corner. Mask and
/// alpha stay as they are.
/// @return the null image for a null image
wxImage ChequeredPicture(const wxImage& image, const wxColour& colour);

} // namespace LS::Widgets
