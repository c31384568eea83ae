// The true picture: linear scene radiance per pixel, before lens, sensor and film.
#pragma once

#include "samples/SampleSeries.h"

namespace LS::Samples {

/// Linear RGB, in the units of SceneLight.h.
struct Radiance {
    double r = 0.0;
    double g = 0.0;
    double b = 0.0;
};

/// Radiance of one pixel of the picture of kSampleWidth x kSampleHeight.
///
/// @param x, y  pixel from the upper left
///
/// The same pixel always gives the same value, whichever pixels were asked for before, so a test can
/// render any subset. The first call prepares the bounced light, which takes some tenths of a second; the
/// preparation is thread-safe and so is everything after it.
Radiance TrueRadiance(int x, int y);

} // namespace LS::Samples
