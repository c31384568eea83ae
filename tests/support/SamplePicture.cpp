// Paints a sky above rippled water, with writing across both.
#include "tests/support/SamplePicture.h"

#include <wx/bitmap.h>
#include <wx/dcmemory.h>

#include <cmath>

namespace {

unsigned char Byte(double dValue)
{
    return static_cast<unsigned char>(std::lround(std::fmin(std::fmax(dValue, 0), 255)));
}

void PaintPixel(wxImage& image, int x, int y)
{
    const int nHorizon = image.GetHeight() / 2;
    const double dHeight = static_cast<double>(nHorizon - y) / nHorizon; // 1 at the top, 0 at the horizon
    if (y < nHorizon) {
        const double dCloud = 40 * std::fmax(0, std::sin(x / 23.0) * std::sin(y / 11.0 + x / 60.0));
        image.SetRGB(x, y, Byte(250 - 190 * dHeight + dCloud), Byte(200 - 90 * dHeight + dCloud),
                     Byte(150 + 80 * dHeight + dCloud));
    } else {
        const double dRipple = 60 * std::sin(x / 2.3 + 5 * std::sin(y / 3.1)) * -dHeight;
        image.SetRGB(x, y, Byte(60 + dRipple), Byte(90 + dRipple), Byte(120 + dRipple - 60 * dHeight));
    }
}

} // namespace

wxImage SamplePicture(wxSize size)
{
    wxImage image(size);
    for (int y = 0; y < size.y; ++y) {
        for (int x = 0; x < size.x; ++x)
            PaintPixel(image, x, y);
    }
    wxBitmap bitmap(image);
    wxMemoryDC dc(bitmap);
    dc.SetTextForeground(*wxWHITE);
    for (int y = 10; y < size.y; y += 60)
        dc.DrawText("Harbour light, 5:40 in the morning, f/8", 10 + y / 3, y);
    dc.SelectObject(wxNullBitmap);
    return bitmap.ConvertToImage();
}
