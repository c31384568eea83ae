// A second, plain tone mapper to hold the engine's roads to.
#pragma once

#include "tests/engine/TonePictures.h"

namespace LS::Tests {

/// The whole operator on one picture, written apart from the engine and without its shortcuts in structure.
/// @param fMaxStart  where the search for the brightest luminance starts
Bytes MapPlainly(const Picture& picture, float fExposure, float fGamma, float fMaxStart);

} // namespace LS::Tests
