// The size of a decimated copy of an image.
#pragma once

#include <cstdint>

/// Every nStepX-th pixel of every nStepY-th row, nWidth x nHeight pixels in all.
struct ScaledSize {
    std::int32_t nWidth;
    std::int32_t nHeight;
    std::int32_t nStepX; ///< 0 where the image is so narrow that nWidth is 0
    std::int32_t nStepY;
};

/// The decimation that leaves at least nRows and below 2 * nRows rows of an image that has at least nRows;
/// a smaller image keeps its size. The aspect ratio is kept, but for truncation.
/// @param nWidth,nHeight  above 0
ScaledSize Decimated(std::int32_t nWidth, std::int32_t nHeight, std::int32_t nRows);
