// Copies a picture's rows into a block that has room for the fourth sample, then widens them in place.
#include "image/RawConversion.h"

#include "image/filter.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

RawConversion ConvertToRaw(const wxImage& image, RawImage& raw)
{
    if (!image.IsOk())
        return RawConversion::Invalid;

    SetImageDefaults(raw);
    const auto nWidth = static_cast<std::size_t>(image.GetWidth());
    const auto nHeight = static_cast<std::size_t>(image.GetHeight());
    const std::size_t nRow = nWidth * 3, nSize = nWidth * nHeight * 4;
    if (nWidth * 4 > std::numeric_limits<std::int32_t>::max() ||
        nSize > std::numeric_limits<std::uint32_t>::max())
        return RawConversion::NoMemory;
    raw.data = AllocImageHandle(nSize);
    if (!raw.data)
        return RawConversion::NoMemory;

    raw.width = image.GetWidth();
    raw.height = image.GetHeight();
    raw.bitsPerPixel = 24;
    raw.bytesPerLine = static_cast<std::int32_t>(nRow);
    raw.dataSize = static_cast<std::uint32_t>(nSize);
    std::memcpy(raw.data->pPixels, image.GetData(), nRow * nHeight); // neither side pads its rows
    ThreeToFourBpp(raw);
    return RawConversion::Converted;
}
