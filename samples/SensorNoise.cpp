// Noise of the imaginary sensor.
#include "samples/SensorNoise.h"

#include "samples/Sampling.h"

#include <numbers>

namespace LS::Samples {
namespace {

// A large sensor at base sensitivity: middle grey scatters by one to two of 255 steps.
constexpr double kElectronsPerExposure = 3500.0;
constexpr double kReadNoise = 6.0;

// G. Box and M. Muller, 1958.
double Gaussian(std::uint32_t seed)
{
    const double u = UnitFromBits(Hash(seed, 1U)) + 1e-10;
    const double v = UnitFromBits(Hash(seed, 2U));
    return std::sqrt(-2.0 * std::log(u)) * std::cos(2.0 * std::numbers::pi * v);
}

} // namespace

double NoisyExposure(double exposure, int x, int y, int frame, Channel channel)
{
    const double electrons = std::min(exposure, kFullExposure) * kElectronsPerExposure;
    const double spread = std::sqrt(electrons + kReadNoise * kReadNoise);
    const double read = electrons + spread * Gaussian(Hash(x, y, frame, static_cast<int>(channel), 77));
    return std::clamp(read / kElectronsPerExposure, 0.0, kFullExposure);
}

} // namespace LS::Samples
