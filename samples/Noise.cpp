// Smooth pseudo-random functions of space, for textures.
#include "samples/Noise.h"

#include "samples/Sampling.h"

namespace LS::Samples {
namespace {

double Fade(double t)
{
    return t * t * (3.0 - 2.0 * t);
}

double Corner(int x, int y, std::uint32_t seed)
{
    return UnitFromBits(Hash(seed, x, y));
}

} // namespace

double Noise(double x, double y, std::uint32_t seed)
{
    const int ix = static_cast<int>(std::floor(x));
    const int iy = static_cast<int>(std::floor(y));
    const double fx = Fade(x - ix);
    const double fy = Fade(y - iy);
    return Mix(Mix(Corner(ix, iy, seed), Corner(ix + 1, iy, seed), fx),
               Mix(Corner(ix, iy + 1, seed), Corner(ix + 1, iy + 1, seed), fx), fy);
}

double Noise(const Vec3& p, std::uint32_t seed)
{
    const double layer = std::floor(p.z);
    const auto below = Hash(seed, static_cast<int>(layer));
    const auto above = Hash(seed, static_cast<int>(layer) + 1);
    return Mix(Noise(p.x, p.y, below), Noise(p.x, p.y, above), Fade(p.z - layer));
}

double Fractal(double x, double y, int octaves, std::uint32_t seed)
{
    double sum = 0.0;
    double weight = 0.5;
    for (int octave = 0; octave < octaves; ++octave) {
        sum += weight * Noise(x, y, seed + static_cast<std::uint32_t>(octave));
        x *= 2.03; // off 2, so that the lattices of two octaves don't line up
        y *= 2.03;
        weight *= 0.5;
    }
    return sum / (1.0 - 2.0 * weight);
}

} // namespace LS::Samples
