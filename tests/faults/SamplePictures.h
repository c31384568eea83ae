// One small picture of each kind that the image library reads.
#pragma once

#include "tests/support/TempFolder.h"

#include <string>
#include <vector>

namespace LS::Tests {

struct SamplePicture {
    std::string sName; ///< with the extension of its kind
    Bytes bytes;
};

/// All kinds, each decodable. The image library's handlers must be registered.
std::vector<SamplePicture> SamplePictures();

/// What a JPEG writer can choose.
struct JpegLayout {
    int nWidth = 40, nHeight = 24;
    bool bProgressive = false;
    bool bArithmetic = false;
    int nChannels = 3; ///< 1: grey, 4: CMYK
};
Bytes Jpeg(const JpegLayout& layout);

/// A JPEG whose refining scan of one channel stands there again and again, each without any data.
Bytes JpegOfManyScans(int nWidth, int nHeight, int nScans);

/// A PNG of a few pixels, and of far more data.
Bytes PngOfTooMuch(int nMegabytes);

} // namespace LS::Tests
