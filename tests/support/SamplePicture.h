// A picture with what compression finds hard: soft gradients, fine texture and sharp edges.
#pragma once

#include <wx/image.h>

#include <cmath>

/// The same picture at each call: a sky above rippled water, with a grid of thin lines across both.
inline wxImage SamplePicture(wxSize size)
{
    wxImage image(size);
    for (int y = 0; y < size.y; ++y)
        for (int x = 0; x < size.x; ++x) {
            const double dRipple = y < size.y / 2 ? 0 : 50 * std::sin(x / 2.3 + 5 * std::sin(y / 3.1));
            const auto byte = [&](double dLow, double dHigh) {
                const double dLevel =
                    x % 30 == 5 || y % 30 == 5 ? 255 : dLow + (dHigh - dLow) * y / size.y + dRipple;
                return static_cast<unsigned char>(std::fmin(std::fmax(dLevel, 0), 255));
            };
            image.SetRGB(x, y, byte(60, 200), byte(110, 190), byte(230, 140));
        }
    return image;
}
