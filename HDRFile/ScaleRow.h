// From the merge's units to those of the picture files.
#pragma once

#include <span>

/// Multiplies each float by 0.001, a double; the product is rounded to 32 bits.
void ScaleRow(std::span<float> fRow);

namespace reference {
/// The definition, one float at a time. Tests hold the fast road to it.
void ScaleRow(std::span<float> fRow);
} // namespace reference
