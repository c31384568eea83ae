// What response recovery found on its way, for whoever wants to know more than the curves.
#pragma once

#include "engine/ResponseCurve.h"

#include <array>
#include <cstdint>

struct RecoveryReport {
    struct Channel {
        std::int32_t nLow = 0; ///< the usable range of 8-bit values; 0 and 0 until it is found
        std::int32_t nHigh = 0;
        std::int32_t nSamples = 0; ///< how many samples went into the equations
        double dStatisticsSeconds = 0;
        double dSelectionSeconds = 0;
        double dFirstSolveSeconds = 0; ///< building the equations included
        double dSecondSolveSeconds = 0;
    };
    std::array<Channel, CURVE_CHANNELS> channels; ///< red, green, blue
};
