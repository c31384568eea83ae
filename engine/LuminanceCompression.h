// The tone curve: adaptive logarithmic mapping of luminance.
//
// F. Drago, K. Myszkowski, T. Annen, N. Chiba, "Adaptive Logarithmic Mapping For Displaying High Contrast
// Scenes", Computer Graphics Forum 22(3), 2003, in that paper's fast form: one bias term for a block of 3 x 3
// pixels where the block is smooth, and rational functions in place of the logarithm.
//
// Logarithms and powers are those of doubles on every road, and rounded afterwards: the roads then agree to
// the last bit, and a library that differs in the last bit of a double hardly ever shows in a float.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>

constexpr float TONE_BIAS = 0.85F; // contrast in the shadows; the value that the paper recommends

/// Where the search for the brightest luminance starts. An image whose brightest pixel lies below 1.0 is
/// mapped a little differently on the road by rows.
constexpr float MAX_START_IN_MEMORY = 0.00001F;
constexpr float MAX_START_BY_ROWS = 1.0F;

/// Folds one pixel into the statistics of an image.
/// @param pfSumLog  sum of logarithms, from 0. A 32-bit float whatever the number of pixels
/// @param pfMax     brightest luminance, from one of the two starts
inline void FoldLuminance(float fY, float* pfSumLog, float* pfMax)
{
    constexpr double ABOVE_ZERO = 0.000023; // black has a logarithm, too
    *pfMax = std::max(*pfMax, fY);          // in this order NaN leaves the maximum alone
    *pfSumLog = static_cast<float>(*pfSumLog + std::log(fY + ABOVE_ZERO));
}

/// The mean of the logarithms of all pixels.
float LogAverage(float fSumLog, std::int32_t nWidth, std::int32_t nHeight);

/// What the compression of one image depends on.
struct ToneCurve {
    /// @param fExposure    in stops; it brightens the pixels but leaves the bias term's reference alone
    /// @param fMax         the brightest luminance, above 0
    /// @param fLogAverage  mean of the logarithms of luminance
    /// @throws std::domain_error "Divide by Zero" if the mean is so low that its luminance is 0
    ToneCurve(float fExposure, float fMax, float fLogAverage, float fBias);

    float fScale;       ///< 2 to the power of the exposure
    float fAdaptation;  ///< world adaptation luminance: the geometric mean
    float fBiasPower;   ///< exponent of the bias term
    float fRelativeMax; ///< brightest luminance over the adaptation luminance
    float fDivisor;     ///< log10 of the relative maximum, so that it maps to about 1
};

constexpr std::size_t TONE_BLOCK = 3; ///< rows of a band, and edge of its blocks

/// Compresses one band in place. The reference is the definition, block by block from column nFrom on, which
/// must be the first column of a block; the other function gives its bits.
/// @param pfBand  nRows x nWidth floats of luminance   @param nRows  1 to TONE_BLOCK
void CompressBand(float* pfBand, std::size_t nWidth, std::size_t nRows, const ToneCurve& curve);

namespace reference {
void CompressBand(float* pfBand, std::size_t nWidth, std::size_t nRows, const ToneCurve& curve,
                  std::size_t nFrom = 0);
} // namespace reference

/// Compresses a plane in place, band by band from the top.
/// @param goOn  called after each band with the band's first row; its false ends the work
/// @return false if goOn ended it
bool CompressPlane(float* pfY, std::int32_t nWidth, std::int32_t nHeight, const ToneCurve& curve,
                   const std::function<bool(std::int32_t nRow)>& goOn);
