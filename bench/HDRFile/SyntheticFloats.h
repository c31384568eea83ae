// A merged picture for the writers to write.
#pragma once

#include <cstdint>
#include <vector>

namespace LS::Bench {

/// Smooth shading over six stops with the noise of a sensor, and a blown-out area that is flat.
/// @return nWidth x nHeight x 3 floats, interleaved R, G, B, in the merge's units
std::vector<float> SyntheticFloats(std::int32_t nWidth, std::int32_t nHeight);

} // namespace LS::Bench
