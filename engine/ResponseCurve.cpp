// The built-in response curve.
#include "engine/ResponseCurve.h"

#include <charconv>
#include <cmath>

namespace {

/// Through decimal text, since that is what "six significant digits" means; to_chars knows no locale.
float RoundedToSixDigits(double dValue)
{
    std::array<char, 32> text{};
    char* const pEnd = text.data() + text.size();
    const auto written = std::to_chars(text.data(), pEnd, dValue, std::chars_format::general, 6);
    float fRounded = 0;
    std::from_chars(text.data(), written.ptr, fRounded);
    return fRounded;
}

std::array<float, CURVE_ENTRIES> MakeStandardCurve()
{
    std::array<float, CURVE_ENTRIES> curve{};
    for (std::size_t z = 0; z < CURVE_ENTRIES; ++z)
        curve[z] = RoundedToSixDigits(0.0001 + 0.000850147 * std::pow(static_cast<double>(z), 1.7));
    return curve;
}

} // namespace

const std::array<float, CURVE_ENTRIES>& StandardCurve()
{
    static const std::array<float, CURVE_ENTRIES> curve = MakeStandardCurve();
    return curve;
}

void AppendCurves(Curves& curves, std::vector<float*>& vafCurves)
{
    vafCurves.reserve(vafCurves.size() + curves.size()); // nothing can fail after this
    for (Curve& pCurve : curves)
        vafCurves.push_back(pCurve.release());
}
