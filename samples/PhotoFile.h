// Writes a picture as a camera would: JPEG with complete Exif data and a thumbnail.
#pragma once

#include "samples/SampleSeries.h"

#include <filesystem>
#include <vector>

namespace LS::Samples {

/// 8-bit R, G, B interleaved, rows from the top.
struct Photo {
    int width = 0;
    int height = 0;
    std::vector<unsigned char> pixels;
};

/// JPEG without chroma subsampling, which would bend the values at coloured edges.
/// @param quality  1..100 @return the file's bytes
std::vector<unsigned char> EncodeJpeg(const Photo& photo, int quality);

/// Writes one frame of the series. @throws std::exception if that fails; a partial file may remain
void WritePhoto(const std::filesystem::path& path, const Photo& photo, const SampleExposure& exposure,
                int frame);

} // namespace LS::Samples
