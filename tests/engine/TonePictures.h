// Pictures to map, and the roads as functions from picture to bytes.
#pragma once

#include "tests/support/TempFolder.h"

#include <cstdint>
#include <string>
#include <vector>

namespace LS::Tests {

/// Linear radiance, interleaved R, G, B.
struct Picture {
    std::int32_t nWidth;
    std::int32_t nHeight;
    std::vector<float> vfPixels;
};

Picture RandomPicture(std::int32_t nWidth, std::int32_t nHeight);    ///< eight decades, saturated colours
Picture SmoothPicture(std::int32_t nWidth, std::int32_t nHeight);    ///< a gradient; all blocks are smooth
Picture ContrastyPicture(std::int32_t nWidth, std::int32_t nHeight); ///< dark with bright specks
Picture Scaled(Picture picture, float fFactor);

/// The three roads, each without progress. The cached ones write the picture to the cache folder first.
/// An empty result stands for null.
Bytes MapScaledImage(const Picture& picture, float fExposure, float fGamma);
Bytes MapCacheInMemory(const Picture& picture, float fExposure, float fGamma);
Bytes MapCacheByRows(const Picture& picture, float fExposure, float fGamma);

} // namespace LS::Tests
