// Small inputs of each target to begin with.
#pragma once

#include "tests/support/TempFolder.h"

#include <string_view>
#include <vector>

namespace LS::Fuzz {

/// @param sTarget  its name, as in the list of targets
std::vector<Tests::Bytes> Seeds(std::string_view sTarget);

} // namespace LS::Fuzz
