// From the merge's units to those of the picture files.
#pragma once

#include <span>

constexpr double FILE_UNITS = 0.001; ///< of the merge's units

/// Multiplies each float by FILE_UNITS, a double; the product is rounded to 32 bits.
void ScaleRow(std::span<float> fRow);

namespace reference {
/// The definition, one float at a time. Tests hold the kernel to it.
void ScaleRow(std::span<float> fRow);
} // namespace reference
