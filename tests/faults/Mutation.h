// Damage to files, the same for the same seed.
#pragma once

#include "tests/support/TempFolder.h"

#include <random>

namespace LS::Tests {

/// Does one to four kinds of damage: flipped bits, numbers at their limits, pieces cut out or repeated, an
/// early end.
Bytes Mutated(Bytes bytes, std::mt19937& random);

} // namespace LS::Tests
