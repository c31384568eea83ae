// The known response of the imaginary camera.
#include "samples/CameraResponse.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace LS::Samples {
namespace {

struct Curve {
    double slope;  // n
    double middle; // k
};

// Red has the softest slope: shadows turn a trace warmer and highlights a trace cooler than the middle.
constexpr std::array<Curve, 3> kCurves{{{1.10, 1.02}, {1.14, 1.00}, {1.17, 0.97}}};

double Hill(const Curve& curve, double exposure)
{
    const double power = std::pow(exposure / curve.middle, curve.slope);
    return power / (power + 1.0);
}

const Curve& CurveOf(Channel channel)
{
    return kCurves[static_cast<std::size_t>(channel)];
}

} // namespace

double Response(Channel channel, double exposure)
{
    const Curve& curve = CurveOf(channel);
    return 255.0 * Hill(curve, std::clamp(exposure, 0.0, kFullExposure)) / Hill(curve, kFullExposure);
}

double InverseResponse(Channel channel, double value)
{
    const Curve& curve = CurveOf(channel);
    const double share = value / 255.0 * Hill(curve, kFullExposure);
    return curve.middle * std::pow(share / (1.0 - share), 1.0 / curve.slope);
}

std::array<double, 256> TrueCurve(Channel channel)
{
    std::array<double, 256> curve{};
    for (std::size_t value = 0; value < curve.size(); ++value)
        curve[value] = InverseResponse(channel, std::clamp(static_cast<double>(value), 0.25, 254.75));
    return curve;
}

} // namespace LS::Samples
