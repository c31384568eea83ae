// Small pictures for the tests of decoding, made at run time.
#pragma once

#include "tests/support/Pixels.h"
#include "tests/support/TempFolder.h"

#include <wx/image.h>

namespace LS::Tests {

/// A picture of 16 x 16 blocks in four colours, which every format of the library can hold.
wxImage BlockPicture(int nWidth, int nHeight);

/// A picture as the library's writer of a format makes it.
Bytes Encoded(const wxImage& image, wxBitmapType type);

/// A picture of any size over three bytes, for code that must not get as far as the pixels.
wxImage PictureWithoutPixels(int nWidth, int nHeight);

/// A TIFF with a single raw strip or tile of 4096 grey bytes, which may claim any size and coding.
struct TiffLayout {
    unsigned nWidth;
    unsigned nHeight;
    unsigned nTileWidth = 0;  // 0: in strips
    unsigned nTileHeight = 0; // 0: as the width
    bool bBig = false;        // with 64-bit offsets
    int nCompression = 1;     // none
    int nSamples = 1;
    int nBits = 8;
};
Bytes GreyTiff(const TiffLayout& layout);

/// The first place of some bytes in others, which must be there.
std::size_t Find(const Bytes& bytes, const Bytes& wanted);

} // namespace LS::Tests
