// Noise of the imaginary sensor.
#pragma once

#include "samples/CameraResponse.h"

namespace LS::Samples {

/// The exposure that the sensor reads instead of the true one.
///
/// Photon noise, as a Gaussian that grows with the square root of the light, plus read noise. The draw is a
/// hash of place, frame and channel, so the same frame always has the same noise.
///
/// @param exposure  true exposure, 0 or more
/// @return 0 to kFullExposure
double NoisyExposure(double exposure, int x, int y, int frame, Channel channel);

} // namespace LS::Samples
