// Numbers as people type them, read and written the same way in every locale.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace LS::Util {

/// Reads a decimal number such as "0.5", "-2" or "1e-3". The point is "."; blanks around it, a plus sign
/// in front, "nan", "inf" and hexadecimal forms are refused.
std::optional<double> ParseNumber(std::string_view sText);

/// Reads a number that somebody typed into a field: as ParseNumber, but the decimal point may also be ",",
/// and blanks and a plus sign may stand in front.
std::optional<double> ParseTypedNumber(std::string_view sText);

/// Reads a number, or two numbers with "/" between them, such as the shutter time "1/125".
/// A denominator of 0 and a quotient out of range are refused.
std::optional<double> ParseFraction(std::string_view sText);

/// A number with nDecimals digits behind the point, rounded as printf does it, the point always being ".".
std::string FormatFixed(double dValue, int nDecimals);

} // namespace LS::Util
