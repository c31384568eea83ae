// A bracketed series of large photographs, and what libraries alone take for them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace LS::Bench {

/// Five photographs of 24 megapixels, two stops apart, of a scene with shade, texture, windows and corners:
/// the darkest shows the windows, the brightest the corners. Each has noise of its own, so that JPEG has work
/// to do.
namespace Photographs {

constexpr std::int32_t WIDTH = 6000, HEIGHT = 4000;
constexpr std::size_t COUNT = 5;
constexpr float F_NUMBER = 8.0F;

/// Shutter times in seconds, darkest first.
std::vector<float> Shutters();

/// Writes photograph i as a source cache file, 4 bytes a pixel.
void WriteSource(std::size_t i, const std::string& sPath);

/// Writes photograph i as a JPEG file of quality 92.
void WriteJpeg(std::size_t i, const std::string& sPath);

/// Decodes a JPEG file with the JPEG library alone, row by row into one buffer.
void DecodeJpeg(const std::string& sPath);

} // namespace Photographs

} // namespace LS::Bench
