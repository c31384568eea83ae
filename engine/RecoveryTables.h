// The two constant tables of response recovery.
#pragma once

#include "engine/ResponseCurve.h"

#include <array>

/// How far an 8-bit value is trusted: the biweight (1 - ((2z - 255) / 255)^2)^2, 0 at both ends and 1 in the
/// middle, each entry rounded to six decimals.
const std::array<double, CURVE_ENTRIES>& BiweightTable();

/// Entry i is log(i + 1), rounded to six decimals and then to 32 bits.
const std::array<float, CURVE_ENTRIES>& LogTable();
