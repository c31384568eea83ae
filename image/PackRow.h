// From an image's pixels to those of a source cache file.
#pragma once

#include <span>

/// Packs one row into four bytes a pixel: the alpha value, or 0, then red, green, blue.
/// @param pRGB    width x 3 bytes   @param pAlpha  width bytes, or null
/// @param packed  receives width x 4 bytes
void PackRow(const unsigned char* pRGB, const unsigned char* pAlpha, std::span<unsigned char> packed);

namespace reference {
/// The definition, one byte at a time. Tests hold the kernel to it.
void PackRow(const unsigned char* pRGB, const unsigned char* pAlpha, std::span<unsigned char> packed);
} // namespace reference
