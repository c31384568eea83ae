// Hashes and well-spread sample points; nothing here has a state.
#pragma once

#include "samples/Vec3.h"

#include <cstdint>

namespace LS::Samples {

/// Mixes 32 bits so that neighbouring inputs give unrelated outputs.
std::uint32_t Hash(std::uint32_t v);

/// A hash of several numbers at once.
template <typename... Rest> std::uint32_t Hash(std::uint32_t v, Rest... rest)
{
    return Hash(Hash(static_cast<std::uint32_t>(rest)...) ^ (v * 0x9e3779b9U));
}

/// 32 random bits as a number in 0..1, 1 excluded.
constexpr double UnitFromBits(std::uint32_t bits)
{
    return bits * (1.0 / 4294967296.0);
}

struct Sample2 {
    double u = 0.0;
    double v = 0.0;
};

/// What a sample point is used for. Each use has points of its own, independent of the others.
enum class SampleUse : std::uint32_t {
    Pixel,
    Window,
    Sun,
    Pendant,
    LampBulb,
    LampShade,
    Ambient,
    Gloss,
    Count
};

/// Names one sample of one pixel (or of one node of the light volume).
struct SampleId {
    std::uint32_t seed = 0;  ///< of the pixel
    std::uint32_t index = 0; ///< 0, 1, 2, ... within the pixel; any power-of-two prefix is well spread
    std::uint32_t depth = 0; ///< bounces so far

    Sample2 Point(SampleUse use) const;
};

/// Two-dimensional Sobol points, 64 of them, shuffled and scrambled by a hash.
/// B. Burley, "Practical Hash-based Owen Scrambling", JCGT 9(4), 2020.
Sample2 ScrambledSobol(std::uint32_t index, std::uint32_t seed);

/// Direction around `normal`, distributed like the cosine.
Vec3 CosineDirection(const Vec3& normal, const Sample2& s);

/// Direction distributed evenly over the sphere.
Vec3 SphereDirection(const Sample2& s);

/// Two unit vectors that complete `normal` to a right-handed frame.
/// T. Duff et al., "Building an Orthonormal Basis, Revisited", JCGT 6(1), 2017.
void Basis(const Vec3& normal, Vec3* tangent, Vec3* bitangent);

} // namespace LS::Samples
