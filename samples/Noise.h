// Smooth pseudo-random functions of space, for textures.
#pragma once

#include "samples/Vec3.h"

#include <cstdint>

namespace LS::Samples {

/// Value noise, 0..1, one random value per unit cell corner, smooth in between.
double Noise(double x, double y, std::uint32_t seed);
double Noise(const Vec3& p, std::uint32_t seed);

/// Sum of `octaves` noises, each twice as fine and half as strong as the one before; 0..1, mean about 0.5.
double Fractal(double x, double y, int octaves, std::uint32_t seed);

} // namespace LS::Samples
