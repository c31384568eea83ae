// Whole rows and planes of colours.
#include "engine/Colour.h"

#include "Util/Assertion.h"
#include "engine/LuminanceCompression.h"

bool RowToYxy(float* pHDRData, std::int32_t nWidth, float* pfSumLog, float* pfMax)
{
    LS_ASSERT(pHDRData != NULL); // NOLINT(modernize-use-nullptr): the text goes to the log
    LS_ASSERT(nWidth > 0);
    for (std::int32_t x = 0; x < nWidth; ++x, pHDRData += 3) {
        const PixelYxy pixel = YxyFromRGB({pHDRData[0], pHDRData[1], pHDRData[2]});
        pHDRData[0] = pixel.fLuminance;
        pHDRData[1] = pixel.fx;
        pHDRData[2] = pixel.fy;
        FoldLuminance(pixel.fLuminance, pfSumLog, pfMax);
    }
    return true;
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

void YxyToRGB(const float* pYChan, const float* pxyChan, std::int32_t nWidth, float* pfRGB)
{
    for (std::int32_t x = 0; x < nWidth; ++x, pxyChan += 2, pfRGB += 3) {
        const PixelRGB pixel = RGBFromYxy({pYChan[x], pxyChan[0], pxyChan[1]});
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
