// Small pictures for the tests of decoding, made at run time.
#include "tests/image/Pictures.h"

#include <tiffio.h>
#include <wx/mstream.h>
#include <wx/palette.h>
#include <wx/quantize.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>

namespace LS::Tests {

wxImage BlockPicture(int nWidth, int nHeight)
{
    constexpr unsigned char COLOURS[4][3] = {{200, 30, 40}, {20, 180, 60}, {10, 50, 220}, {240, 230, 90}};
    constexpr int BLOCK = 16;
    wxImage image(nWidth, nHeight);
    for (int y = 0; y < nHeight; ++y)
        for (int x = 0; x < nWidth; ++x) {
            const auto& colour = COLOURS[(x / BLOCK + 2 * (y / BLOCK)) % 4];
            image.SetRGB(x, y, colour[0], colour[1], colour[2]);
        }
    return image;
}

Bytes Encoded(const wxImage& image, wxBitmapType type)
{
    wxImage copy = image.Copy();
    if (type == wxBITMAP_TYPE_GIF)
        wxQuantize::Quantize(image, copy, 16);
    wxMemoryOutputStream stream;
    if (!copy.SaveFile(stream, type))
        throw std::runtime_error("the library can't write this format");
    Bytes bytes(static_cast<std::size_t>(stream.GetLength()));
    stream.CopyTo(bytes.data(), bytes.size());
    return bytes;
}

wxImage PictureWithoutPixels(int nWidth, int nHeight)
{
    static unsigned char pixel[3];
    return {nWidth, nHeight, pixel, true};
}

Bytes GreyTiff(const TiffLayout& layout)
{
    const TempFolder folder;
    const std::string sPath = folder.File("grey.tif");
    TIFF* pTiff = TIFFOpen(sPath.c_str(), layout.bBig ? "w8" : "w");
    if (!pTiff)
        throw std::runtime_error("can't write " + sPath);
    TIFFSetField(pTiff, TIFFTAG_IMAGEWIDTH, layout.nWidth);
    TIFFSetField(pTiff, TIFFTAG_IMAGELENGTH, layout.nHeight);
    TIFFSetField(pTiff, TIFFTAG_BITSPERSAMPLE, layout.nBits);
    TIFFSetField(pTiff, TIFFTAG_SAMPLESPERPIXEL, layout.nSamples);
    TIFFSetField(pTiff, TIFFTAG_COMPRESSION, layout.nCompression);
    TIFFSetField(pTiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    std::array<unsigned char, 4096> pixels{};
    pixels.fill(77);
    if (layout.nTileWidth > 0) {
        TIFFSetField(pTiff, TIFFTAG_TILEWIDTH, layout.nTileWidth);
        TIFFSetField(pTiff, TIFFTAG_TILELENGTH, layout.nTileHeight ? layout.nTileHeight : layout.nTileWidth);
        TIFFWriteRawTile(pTiff, 0, pixels.data(), pixels.size());
    } else {
        TIFFSetField(pTiff, TIFFTAG_ROWSPERSTRIP, layout.nHeight);
        TIFFWriteRawStrip(pTiff, 0, pixels.data(), pixels.size());
    }
    TIFFClose(pTiff);
    return ReadBytes(sPath);
}

std::size_t Find(const Bytes& bytes, const Bytes& wanted)
{
    const auto found = std::search(bytes.begin(), bytes.end(), wanted.begin(), wanted.end());
    if (found == bytes.end())
        throw std::runtime_error("the bytes aren't there");
    return static_cast<std::size_t>(found - bytes.begin());
}

} // namespace LS::Tests
