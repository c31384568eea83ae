// From floats to the half precision of OpenEXR.
#pragma once

#include <cstdint>
#include <span>

/// Rounds a row of linear RGB to half precision, to nearest and to even on ties, as OpenEXR's own type does:
/// what is too large becomes infinity. Alpha is 1.
/// @param fRGB   width x 3 floats, interleaved R, G, B
/// @param nRGBA  receives the bits of width x 4 halves, interleaved R, G, B, A
void HalfRow(std::span<const float> fRGB, std::span<std::uint16_t> nRGBA);

namespace reference {
/// The definition, by OpenEXR's type. Tests hold the kernel to it.
void HalfRow(std::span<const float> fRGB, std::span<std::uint16_t> nRGBA);
} // namespace reference
