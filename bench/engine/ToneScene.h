// The picture that the measurements of tone mapping share.
#pragma once

#include <cstdint>
#include <vector>

namespace LS::Bench {

/// A scene with a soft gradient over three decades, some texture, and a few strong edges.
/// @return nWidth x nHeight x 3 floats, R, G, B
std::vector<float> ToneScene(std::int32_t nWidth, std::int32_t nHeight);

} // namespace LS::Bench
