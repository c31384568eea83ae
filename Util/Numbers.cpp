// Locale-free reading of numbers and fractions.
#include "Util/Numbers.h"

#include <charconv>
#include <cmath>
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

} // namespace LS::Util
