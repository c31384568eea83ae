// Camera response curves: which radiance an 8-bit pixel value stands for.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

constexpr std::size_t CURVE_ENTRIES = 256;
constexpr std::size_t CURVE_CHANNELS = 3; // red, green, blue
constexpr std::array<const char*, CURVE_CHANNELS> CHANNEL_NAMES = {"red", "green", "blue"};

/// Entry z is the linear radiance, in arbitrary units, that the pixel value z stands for at unit exposure.
using Curve = std::unique_ptr<float[]>;
using Curves = std::array<Curve, CURVE_CHANNELS>;

/// The built-in curve, for all three channels: 0.0001 + 0.000850147 z^1.7, each value rounded to six
/// significant digits.
const std::array<float, CURVE_ENTRIES>& StandardCurve();

/// Hands three curves over to a vector of owning pointers, all or none.
void AppendCurves(Curves& curves, std::vector<float*>& vafCurves);
