// How exact the logarithms and powers on lanes are, whatever the instruction set.
#pragma once

namespace LS::Lanes {

/// Bound of the relative error of Log and BiasedLog: 2^-43. bench/engine/EveryFloat.cpp measures it.
constexpr double ELEMENTARY_ERROR = 1.0 / 8796093022208.0;

/// The interval that RoundsAlike looks at: 2^-40, for a quotient of two such values and the library's own
/// errors.
constexpr double ROUNDING_MARGIN = 8 * ELEMENTARY_ERROR;

} // namespace LS::Lanes
