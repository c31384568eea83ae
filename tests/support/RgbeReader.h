// Reads Radiance RGBE pictures, for tests only; written from the format's description.
#pragma once

#include "tests/support/TempFolder.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace LS::Tests {

/// The mantissas of red, green and blue, and the exponent byte that they share.
using Rgbe = std::array<unsigned char, 4>;

struct RgbePicture {
    std::vector<std::string> vsHeader; ///< lines before the empty one, the magic line included
    int nWidth = 0;
    int nHeight = 0;
    std::vector<Rgbe> vPixels; ///< rows from the top, pixels from the left
};

/// Throws what the standard library has for it on anything malformed.
RgbePicture ReadRgbe(const Bytes& bytes);

/// Expands packets until nCount bytes are there, starting at nPosition and moving it behind them.
Bytes ReadRgbePlane(const Bytes& bytes, std::size_t& nPosition, std::size_t nCount);

/// The light that one mantissa stands for; the true value lies at most one RgbeStep above it.
double RgbeValue(const Rgbe& pixel, std::size_t nChannel);
double RgbeStep(const Rgbe& pixel);

} // namespace LS::Tests
