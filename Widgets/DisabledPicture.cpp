// Half of the pixels give way to the background.
#include "Widgets/DisabledPicture.h"

namespace LS::Widgets {

wxImage ChequeredPicture(const wxImage& image, const wxColour& colour)
{
    if (!image.IsOk())
        return {};
    wxImage chequered = image.Copy();
    for (int y = 0; y < chequered.GetHeight(); ++y) {
        for (int x = y % 2; x < chequered.GetWidth(); x += 2)
            chequered.SetRGB(x, y, colour.Red(), colour.Green(), colour.Blue());
    }
    return chequered;
}

} // namespace LS::Widgets
