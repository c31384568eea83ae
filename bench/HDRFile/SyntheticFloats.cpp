// A merged picture for the writers to write.
#include "bench/HDRFile/SyntheticFloats.h"

#include <cmath>
#include <cstddef>
#include <random>

namespace LS::Bench {

std::vector<float> SyntheticFloats(std::int32_t nWidth, std::int32_t nHeight)
{
    std::mt19937 random(1);
    std::normal_distribution<float> noise(1.0F, 0.02F);
    std::vector<float> vfPixels;
    vfPixels.reserve(3 * static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight));
    for (std::int32_t y = 0; y < nHeight; ++y)
        for (std::int32_t x = 0; x < nWidth; ++x) {
            const auto fStops =
                static_cast<float>(3 * std::sin(9.0 * x / nWidth) * std::cos(4.0 * y / nHeight));
            const bool bBlownOut = fStops > 2.7F;
            for (const float fTint : {1.0F, 0.8F, 0.6F})
                vfPixels.push_back(bBlownOut ? 8000.0F : 1000 * fTint * std::exp2(fStops) * noise(random));
        }
    return vfPixels;
}

} // namespace LS::Bench
