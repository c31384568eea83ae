// Whole rows and planes of colours.
#include "engine/Colour.h"

#include "Util/Assertion.h"
#include "engine/LuminanceCompression.h"
#include "engine/lanes/Kernels.h"

namespace reference {

void RowToYxy(float* pHDRData, std::size_t nPixels, float* pfSumLog, float* pfMax)
{
    for (std::size_t i = 0; i < nPixels; ++i, pHDRData += 3) {
        const PixelYxy pixel = YxyFromRGB({pHDRData[0], pHDRData[1], pHDRData[2]});
        pHDRData[0] = pixel.fLuminance;
        pHDRData[1] = pixel.fx;
        pHDRData[2] = pixel.fy;
        FoldLuminance(pixel.fLuminance, pfSumLog, pfMax);
    }
}

void PlanesToYxy(float* pfFirst, float* pfSecond, float* pfThird, std::size_t nPixels, float* pfSumLog,
                 float* pfMax)
{
    for (std::size_t i = 0; i < nPixels; ++i) {
        const PixelYxy pixel = YxyFromRGB({pfFirst[i], pfSecond[i], pfThird[i]});
        pfFirst[i] = pixel.fLuminance;
        pfSecond[i] = pixel.fx;
        pfThird[i] = pixel.fy;
        FoldLuminance(pixel.fLuminance, pfSumLog, pfMax);
    }
}

void YxyToRGB(const float* pYChan, const float* pxyChan, std::size_t nPixels, float* pfRGB)
{
    for (std::size_t i = 0; i < nPixels; ++i, pxyChan += 2, pfRGB += 3) {
        const PixelRGB pixel = RGBFromYxy({pYChan[i], pxyChan[0], pxyChan[1]});
        pfRGB[0] = pixel.fR;
        pfRGB[1] = pixel.fG;
        pfRGB[2] = pixel.fB;
    }
}

void PlanesToRGB(float* pfFirst, float* pfSecond, float* pfThird, std::size_t nPixels)
{
    for (std::size_t i = 0; i < nPixels; ++i) {
        const PixelRGB pixel = RGBFromYxy({pfFirst[i], pfSecond[i], pfThird[i]});
        pfFirst[i] = pixel.fR;
        pfSecond[i] = pixel.fG;
        pfThird[i] = pixel.fB;
    }
}

} // namespace reference

bool RowToYxy(float* pHDRData, std::int32_t nWidth, float* pfSumLog, float* pfMax)
{
    LS_ASSERT(pHDRData != NULL); // NOLINT(modernize-use-nullptr): the text goes to the log
    LS_ASSERT(nWidth > 0);
    const auto nPixels = static_cast<std::size_t>(nWidth);
    const auto* pKernels = LS::Lanes::Kernels();
    const std::size_t nDone = pKernels ? pKernels->RowToYxy(pHDRData, nPixels, pfSumLog, pfMax) : 0;
    reference::RowToYxy(pHDRData + 3 * nDone, nPixels - nDone, pfSumLog, pfMax);
    return true;
}

void PlanesToYxy(float* pfFirst, float* pfSecond, float* pfThird, std::size_t nPixels, float* pfSumLog,
                 float* pfMax)
{
    const auto* pKernels = LS::Lanes::Kernels();
    const std::size_t nDone =
        pKernels ? pKernels->PlanesToYxy(pfFirst, pfSecond, pfThird, nPixels, pfSumLog, pfMax) : 0;
    reference::PlanesToYxy(pfFirst + nDone, pfSecond + nDone, pfThird + nDone, nPixels - nDone, pfSumLog,
                           pfMax);
}

void YxyToRGB(const float* pYChan, const float* pxyChan, std::int32_t nWidth, float* pfRGB)
{
    const auto nPixels = static_cast<std::size_t>(nWidth);
    const auto* pKernels = LS::Lanes::Kernels();
    const std::size_t nDone = pKernels ? pKernels->RowToRGB(pYChan, pxyChan, nPixels, pfRGB) : 0;
    reference::YxyToRGB(pYChan + nDone, pxyChan + 2 * nDone, nPixels - nDone, pfRGB + 3 * nDone);
}

void PlanesToRGB(float* pfFirst, float* pfSecond, float* pfThird, std::size_t nPixels)
{
    const auto* pKernels = LS::Lanes::Kernels();
    const std::size_t nDone = pKernels ? pKernels->PlanesToRGB(pfFirst, pfSecond, pfThird, nPixels) : 0;
    reference::PlanesToRGB(pfFirst + nDone, pfSecond + nDone, pfThird + nDone, nPixels - nDone);
}

float LS::Lanes::SumWithLog(float fSum, float fY)
{
    float fMax = 0;
    FoldLuminance(fY, &fSum, &fMax);
    return fSum;
}
