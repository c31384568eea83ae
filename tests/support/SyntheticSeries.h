// Bracketed series rendered from a scene whose radiances and whose camera are known.
#pragma once

#include "tests/support/TempFolder.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace LS::Tests {

/// A film-like response, S-shaped in log exposure: 255 / (1 + (exposure / middle)^-contrast).
struct FilmResponse {
    double dContrast = 1.2;
    double dMiddle = 1.0; ///< the exposure that gives half of the range

    /// The 8-bit value of an exposure, rounded as a camera does.
    unsigned char Value(double dExposure) const;
    /// The natural logarithm of the exposure that a value stands for; 0 < dValue < 255.
    double LogExposure(double dValue) const;
};

/// Linear radiances, interleaved R, G, B.
struct SyntheticScene {
    std::int32_t nWidth = 0, nHeight = 0;
    std::vector<double> vdRadiances;
};

/// Smooth gradients, flat patches and a fine texture over five decades, each channel with a tint of its own.
SyntheticScene RenderScene(std::int32_t nWidth, std::int32_t nHeight);

/// The arguments of a merge, and its source cache files in a folder.
struct SyntheticSeries {
    std::int32_t nWidth = 0, nHeight = 0;
    std::vector<std::wstring> vsFiles;
    std::vector<float> vfShutters, vfStops, vfGains, vfNDs;
};

/// Photographs a scene at f/8: one image for each shutter time.
SyntheticSeries Photograph(const TempFolder& folder, const SyntheticScene& scene,
                           const FilmResponse& response, const std::vector<double>& vdShutters);

/// One source cache file from planes of red, green and blue.
void WriteSource(const std::string& sPath, const std::array<Bytes, 3>& planes);

/// Shutter times evenly spaced by a factor around one second.
std::vector<double> Bracket(int nImages, double dFactor);

/// The same series with its images in another order.
SyntheticSeries Reordered(const SyntheticSeries& series, const std::vector<std::size_t>& vnOrder);

} // namespace LS::Tests
