// TIFF pictures with 8-bit samples; the writer takes 16-bit and floating point records as well.
#pragma once

#include "image/RawImage.h"

#include <cstdint>
#include <string>

/// What the tags of a file say. Filled anew for each save.
struct TiffMetadata {
    struct Compression {
        std::uint16_t type;      ///< TIFF's own code
        std::uint16_t predictor; ///< with LZW only
    };

    std::int32_t imageWidth;
    std::int32_t imageHeight;
    float xPixelsPerResolution;
    float yPixelsPerResolution;
    std::uint16_t resolutionUnits;
    std::uint16_t samplesPerPixel;
    std::uint16_t bitsPerSample;
    std::int32_t bytesPerLine;
    std::uint32_t rowsPerStrip;
    Compression compression;
    std::uint16_t imageNumber;
    std::uint16_t imageTotalNumber; ///< 0: not known
    std::int32_t bitsPerPixel;
};

/// Writes a record as a TIFF file, one row a strip, 300 pixels an inch. Four samples are taken as A R G B and
/// written as R G B A.
///
/// @param raw          its pixels are changed
/// @param fileName     in the file system's bytes; a regular file of that name is replaced
/// @param compression  0 none, 1 Deflate, 2 PackBits, 3 LZW, 4 JPEG, anything else PackBits. JPEG fails at
/// the
///                     first row, as its blocks need strips of at least 8 rows
/// @param sixteenBit   whether records of 48 bits a pixel or more keep their depth
/// @param psReason     receives why it failed, for the caller's log; null: it goes to the log from here
/// @return 1 when the whole file is written, -1 on failure. A failure also leaves a line on the error stream
///         and deletes a readable regular file of that name
int WriteLdrTiff(RawImage& raw, const char* fileName, unsigned compression, bool sixteenBit,
                 std::string* psReason = nullptr);

/// Where the low-level image units report errors to. It shows nothing: the result carries the failure.
[[gnu::format(printf, 1, 2)]] void ReportError(const char* szFormat, ...);
