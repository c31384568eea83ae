// Numbers as people type them, read the same way in every locale.
#pragma once

#include <optional>
#include <string_view>

namespace LS::Util {

/// Reads a decimal number such as "0.5", "-2" or "1e-3". The point is "."; blanks around it, a plus sign
/// in front, "nan", "inf" and hexadecimal forms are refused.
std::optional<double> ParseNumber(std::string_view sText);

/// Reads a number, or two numbers with "/" between them, such as the shutter time "1/125".
/// A denominator of 0 and a quotient out of range are refused.
std::optional<double> ParseFraction(std::string_view sText);

} // namespace LS::Util
