// Folders of a name that nobody else has.
#pragma once

#include <string>

namespace LS::Util {

/// Makes a new folder that only its owner may enter. The caller removes it.
/// @param sPrefix  the path up to the letters that make it unique
/// @return its path; empty if it can't be made, and errno tells why
std::string MakeUniqueFolder(const std::string& sPrefix);

} // namespace LS::Util
