// TIFF pictures with 32-bit floating point samples, LZW compressed, one row a strip.
#pragma once

#include "engine/ProgbarSetter.h"

#include <cstdint>

/// Writes a float cache file, its values times 0.001.
///
/// @param HDRDataFile  nWidth x nHeight x 3 floats without header
/// @param fileName     the picture; replaced if it exists, refused if it is anything but a regular file.
///                     Both paths are in the file system's bytes
/// @return true when the whole file is written and closed; after a failure the partial file stays
bool WriteFloatTiffFile(const char* HDRDataFile, const char* fileName, std::int32_t nWidth,
                        std::int32_t nHeight, ProgbarSetter* pProgress);
