// The adaptive logarithmic mapping, block by block.
#include "engine/LuminanceCompression.h"

#include "engine/lanes/Kernels.h"

#include <stdexcept>

namespace {

/// A block of up to 3 x 3 pixels of a band.
class Block {
public:
    Block(float* pfFirst, std::size_t nStride, std::size_t nColumns, std::size_t nRows)
        : m_pfFirst(pfFirst), m_nStride(nStride), m_nColumns(nColumns), m_nRows(nRows)
    {
    }

    float First() const { return *m_pfFirst; }

    /// The pixel in the middle of a whole block; the first one where a clipped block lacks it.
    float Centre() const { return m_nColumns > 1 && m_nRows > 1 ? m_pfFirst[m_nStride + 1] : First(); }

    template <typename Function> void Map(Function function)
    {
        for (std::size_t y = 0; y < m_nRows; ++y)
            for (std::size_t x = 0; x < m_nColumns; ++x) {
                float& fValue = m_pfFirst[y * m_nStride + x];
                fValue = function(fValue);
            }
    }

private:
    float* m_pfFirst;
    std::size_t m_nStride, m_nColumns, m_nRows;
};

/// log(2 + 8 (v / Lrel)^biasP), the logarithm whose base the bias adapts to the pixel.
double BiasedLog(float fValue, const ToneCurve& curve)
{
    const float fRelative = fValue / curve.fRelativeMax;
    return std::log(2.0 + 8.0 * std::pow(static_cast<double>(fRelative), curve.fBiasPower));
}

float RoughPixel(float fValue, const ToneCurve& curve)
{
    return static_cast<float>(std::log(fValue + 1.0) / BiasedLog(fValue, curve) / curve.fDivisor);
}

/// log(v + 1), by Pade approximations where they are good. Most pixels lie there.
double FastLog(float fValue)
{
    if (fValue < 1.0)
        return fValue * (fValue + 6.0) / (4.0 * fValue + 6.0);
    if (fValue < 2.0)
        return fValue * (0.7662 * fValue + 6.0) / (3.7658 * fValue + 5.9897);
    return std::log(fValue + 1.0);
}

float SmoothPixel(float fValue, float fShared, const ToneCurve& curve)
{
    return static_cast<float>(FastLog(fValue) / fShared / curve.fDivisor);
}

void CompressBlock(Block block, const ToneCurve& curve)
{
    float fTotal = 0;
    block.Map([&](float fValue) {
        const float fNormalised = fValue / curve.fAdaptation * curve.fScale;
        fTotal += fNormalised;
        return fNormalised;
    });
    // By 9 also where the border clips the block.
    const auto fContrast = static_cast<float>(fTotal / 9.0 - block.First());
    if (fContrast <= -1.0 || fContrast >= 1.0) {
        block.Map([&](float fValue) { return RoughPixel(fValue, curve); });
    } else {
        const auto fShared = static_cast<float>(BiasedLog(block.Centre(), curve));
        block.Map([&](float fValue) { return SmoothPixel(fValue, fShared, curve); });
    }
}

} // namespace

float LogAverage(float fSumLog, std::int32_t nWidth, std::int32_t nHeight)
{
    return static_cast<float>(fSumLog / (static_cast<double>(nWidth) * nHeight));
}

ToneCurve::ToneCurve(float fExposure, float fMax, float fLogAverage, float fBias)
    : fScale(static_cast<float>(std::pow(2.0, fExposure))),
      fAdaptation(static_cast<float>(std::exp(static_cast<double>(fLogAverage)))),
      fBiasPower(static_cast<float>(std::log(static_cast<double>(fBias)) / -0.693147)), fRelativeMax(0),
      fDivisor(0)
{
    if (fAdaptation == 0)
        throw std::domain_error("Divide by Zero");
    fRelativeMax = fMax / fAdaptation;
    fDivisor = static_cast<float>(std::log10(fRelativeMax + 1.0));
}

void reference::CompressBand(float* pfBand, std::size_t nWidth, std::size_t nRows, const ToneCurve& curve,
                             std::size_t nFrom)
{
    for (std::size_t x = nFrom; x < nWidth; x += TONE_BLOCK)
        CompressBlock({pfBand + x, nWidth, std::min(TONE_BLOCK, nWidth - x), nRows}, curve);
}

void CompressBand(float* pfBand, std::size_t nWidth, std::size_t nRows, const ToneCurve& curve)
{
    const auto* pKernels = LS::Lanes::Kernels();
    const bool bWhole = nRows == TONE_BLOCK;
    const std::size_t nDone = pKernels && bWhole ? pKernels->CompressBand(pfBand, nWidth, curve) : 0;
    reference::CompressBand(pfBand, nWidth, nRows, curve, nDone);
}

float LS::Lanes::SharedLog(float fCentre, const ToneCurve& curve)
{
    return static_cast<float>(BiasedLog(fCentre, curve));
}

float LS::Lanes::CompressedInSmoothBlock(float fValue, float fShared, const ToneCurve& curve)
{
    return SmoothPixel(fValue, fShared, curve);
}

float LS::Lanes::CompressedInRoughBlock(float fValue, const ToneCurve& curve)
{
    return RoughPixel(fValue, curve);
}

bool CompressPlane(float* pfY, std::int32_t nWidth, std::int32_t nHeight, const ToneCurve& curve,
                   const std::function<bool(std::int32_t nRow)>& goOn)
{
    const auto nColumns = static_cast<std::size_t>(nWidth);
    const auto nRows = static_cast<std::size_t>(nHeight);
    for (std::size_t y = 0; y < nRows; y += TONE_BLOCK) {
        CompressBand(pfY + y * nColumns, nColumns, std::min(TONE_BLOCK, nRows - y), curve);
        if (!goOn(static_cast<std::int32_t>(y)))
            return false;
    }
    return true;
}
