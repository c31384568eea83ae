// Decimation without filtering: which pixels are taken.
#include "engine/ScaledSize.h"

ScaledSize Decimated(std::int32_t nWidth, std::int32_t nHeight, std::int32_t nRows)
{
    const std::int32_t nFactor = nHeight / nRows;
    const std::int32_t nScaledHeight = nFactor != 0 ? nHeight / nFactor : nHeight;
    const auto nScaledWidth =
        static_cast<std::int32_t>(nWidth / (static_cast<double>(nHeight) / nScaledHeight));
    return {nScaledWidth, nScaledHeight, nScaledWidth != 0 ? nWidth / nScaledWidth : 0,
            nHeight / nScaledHeight};
}
