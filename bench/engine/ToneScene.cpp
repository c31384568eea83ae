// Synthetic radiance.
#include "bench/engine/ToneScene.h"

#include <cmath>
#include <cstddef>

namespace LS::Bench {

std::vector<float> ToneScene(std::int32_t nWidth, std::int32_t nHeight)
{
    std::vector<float> vfPixels;
    vfPixels.reserve(3 * static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight));
    for (std::int32_t y = 0; y < nHeight; ++y)
        for (std::int32_t x = 0; x < nWidth; ++x) {
            const float fBase = std::pow(10.0F, 3.0F * static_cast<float>(y) / static_cast<float>(nHeight));
            const bool bLamp = x % 97 < 9 && y % 83 < 9;
            const float fTexture = 1.0F + 0.2F * static_cast<float>((x * 7 + y * 13) % 17) / 17.0F;
            const float fLight = (bLamp ? 50.0F : 1.0F) * fBase * fTexture;
            vfPixels.insert(vfPixels.end(), {fLight, 0.8F * fLight, 0.6F * fLight});
        }
    return vfPixels;
}

} // namespace LS::Bench
