// Hashes and well-spread sample points.
#include "samples/Sampling.h"

#include <array>
#include <numbers>

namespace LS::Samples {
namespace {

constexpr std::uint32_t ReverseBits(std::uint32_t v)
{
    v = (v << 16) | (v >> 16);
    v = ((v & 0x00ff00ffU) << 8) | ((v & 0xff00ff00U) >> 8);
    v = ((v & 0x0f0f0f0fU) << 4) | ((v & 0xf0f0f0f0U) >> 4);
    v = ((v & 0x33333333U) << 2) | ((v & 0xccccccccU) >> 2);
    return ((v & 0x55555555U) << 1) | ((v & 0xaaaaaaaaU) >> 1);
}

// S. Laine and T. Karras, "Stratified Sampling for Stochastic Transparency", EGSR 2011: each bit is
// changed by lower bits only, which on reversed numbers is a nested (Owen) scramble.
std::uint32_t LaineKarras(std::uint32_t v, std::uint32_t seed)
{
    v += seed;
    v ^= v * 0x6c50b47cU;
    v ^= v * 0xb82f1e52U;
    v ^= v * 0xc7afe638U;
    v ^= v * 0x8d22f6e6U;
    return v;
}

constexpr std::uint32_t kPoints = 64;

// Bit-reversed second Sobol dimension: row by row the Pascal triangle modulo 2.
constexpr std::array<std::uint32_t, kPoints> SecondSobolReversed()
{
    std::array<std::uint32_t, kPoints> points{};
    for (std::uint32_t index = 0; index < kPoints; ++index) {
        std::uint32_t column = 1;
        for (std::uint32_t bits = index; bits != 0; bits >>= 1) {
            points[index] ^= (bits & 1U) != 0 ? column : 0U;
            column ^= column << 1;
        }
    }
    return points;
}

} // namespace

std::uint32_t Hash(std::uint32_t v)
{
    v ^= v >> 16;
    v *= 0x7feb352dU;
    v ^= v >> 15;
    v *= 0x846ca68bU;
    return v ^ (v >> 16);
}

Sample2 ScrambledSobol(std::uint32_t index, std::uint32_t seed)
{
    static constexpr auto second = SecondSobolReversed();
    // Scrambling the reversed index keeps each power-of-two prefix together.
    const std::uint32_t shuffled = LaineKarras(index, seed) % kPoints;
    const std::uint32_t x = LaineKarras(shuffled, seed * 0x9e3779b1U + 0x68bc21ebU);
    const std::uint32_t y = LaineKarras(second[shuffled], seed * 0x85ebca6bU + 0x02e5be93U);
    return {UnitFromBits(ReverseBits(x)), UnitFromBits(ReverseBits(y))};
}

Sample2 SampleId::Point(SampleUse use) const
{
    const auto uses = static_cast<std::uint32_t>(SampleUse::Count);
    return ScrambledSobol(index,
                          Hash(seed ^ ((depth * uses + static_cast<std::uint32_t>(use)) * 0x9e3779b9U)));
}

void Basis(const Vec3& normal, Vec3* tangent, Vec3* bitangent)
{
    const double sign = std::copysign(1.0, normal.z);
    const double a = -1.0 / (sign + normal.z);
    const double b = normal.x * normal.y * a;
    *tangent = {1.0 + sign * normal.x * normal.x * a, sign * b, -sign * normal.x};
    *bitangent = {b, sign + normal.y * normal.y * a, -normal.y};
}

Vec3 CosineDirection(const Vec3& normal, const Sample2& s)
{
    Vec3 tangent;
    Vec3 bitangent;
    Basis(normal, &tangent, &bitangent);
    const double radius = std::sqrt(s.u);
    const double angle = 2.0 * std::numbers::pi * s.v;
    return tangent * (radius * std::cos(angle)) + bitangent * (radius * std::sin(angle)) +
           normal * std::sqrt(1.0 - s.u);
}

Vec3 SphereDirection(const Sample2& s)
{
    const double z = 1.0 - 2.0 * s.u;
    const double radius = std::sqrt(std::max(0.0, 1.0 - z * z));
    const double angle = 2.0 * std::numbers::pi * s.v;
    return {radius * std::cos(angle), radius * std::sin(angle), z};
}

} // namespace LS::Samples
