// Locale-free reading and writing of numbers and fractions.
#include "Util/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace LS::Util {

std::optional<double> ParseNumber(std::string_view sText)
{
    double dValue = 0;
    const char* const pEnd = sText.data() + sText.size();
    const auto [pStop, error] = std::from_chars(sText.data(), pEnd, dValue);
    if (error != std::errc() || pStop != pEnd || !std::isfinite(dValue))
        return std::nullopt;
    return dValue;
}

std::optional<double> ParseTypedNumber(std::string_view sText)
{
    sText.remove_prefix(std::min(sText.find_first_not_of(" \t\n\v\f\r"), sText.size()));
    if (sText.starts_with('+') && !sText.starts_with("+-"))
        sText.remove_prefix(1);
    std::string sNumber(sText);
    std::replace(sNumber.begin(), sNumber.end(), ',', '.');
    return ParseNumber(sNumber);
}

std::optional<double> ParseFraction(std::string_view sText)
{
    const std::size_t nSlash = sText.find('/');
    if (nSlash == std::string_view::npos)
        return ParseNumber(sText);

    const auto dNumerator = ParseNumber(sText.substr(0, nSlash));
    const auto dDenominator = ParseNumber(sText.substr(nSlash + 1));
    if (!dNumerator || !dDenominator || *dDenominator == 0)
        return std::nullopt;
    const double dValue = *dNumerator / *dDenominator;
    return std::isfinite(dValue) ? std::optional(dValue) : std::nullopt;
}

std::string FormatFixed(double dValue, int nDecimals)
{
    // Room for the longest number there is, its sign and its point.
    std::string sText(std::numeric_limits<double>::max_exponent10 + 3 + static_cast<std::size_t>(nDecimals),
                      0);
    const auto [pEnd, error] =
        std::to_chars(sText.data(), sText.data() + sText.size(), dValue, std::chars_format::fixed, nDecimals);
    sText.resize(error == std::errc() ? static_cast<std::size_t>(pEnd - sText.data()) : 0);
    return sText;
}

} // namespace LS::Util
