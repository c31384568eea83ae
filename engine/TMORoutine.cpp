// The roads that hold the whole image in memory.
#include "engine/TMORoutine.h"

#include "Util/Assertion.h"
#include "Util/Paths.h"
#include "Util/RegularFile.h"
#include "engine/LuminanceCompression.h"
#include "engine/ProgbarSetter.h"
#include "engine/TMOContext.h"

#include <fcntl.h>

#include <cstddef>
#include <vector>

using LS::Util::PixelBuffer;

namespace {

PixelBuffer Interleaved(const BytePlanes& planes, std::size_t nPixels)
{
    PixelBuffer pPixels = LS::Util::MakePixelBuffer(3 * nPixels);
    unsigned char* pOut = pPixels.get();
    const auto [pRed, pGreen, pBlue] = planes.apPlanes;
    for (std::size_t i = 0; i < nPixels; ++i, pOut += 3) {
        pOut[0] = pRed[i];
        pOut[1] = pGreen[i];
        pOut[2] = pBlue[i];
    }
    return pPixels;
}

/// What both roads do once the planes are filled.
/// @param nRunFrom,nRunDone  the position where the tone mapper starts, and the report after it
PixelBuffer MapPlanes(HDRImage& image, float fExposure, float fGamma, std::int32_t nRunFrom,
                      std::int32_t nRunDone, ProgbarSetter* pProgress)
{
    TMOContext context(&image, fExposure, fGamma, TONE_BIAS);
    SubProgress runProgress(pProgress, nRunFrom, 96);
    const auto pPlanes = context.Run(runProgress.Get());
    Report(pProgress, nRunDone);
    if (!pPlanes)
        return nullptr;
    PixelBuffer pPixels = Interleaved(*pPlanes, image.Pixels());
    Report(pProgress, 100);
    return pPixels;
}

bool ReadPlanes(const std::wstring& sFile, HDRImage& image)
{
    const std::size_t nRowPixels = static_cast<std::size_t>(image.nWidth);
    std::vector<float> vfRow(3 * nRowPixels);
    const std::size_t nRowBytes = vfRow.size() * sizeof(float);
    const LS::Util::RegularFile file("tone map", LS::Util::NarrowPath(sFile), O_RDONLY);
    if (!file.Holds(nRowBytes * static_cast<std::size_t>(image.nHeight)))
        return false;
    std::size_t nOffset = 0;
    for (std::size_t nFirst = 0; nFirst < image.Pixels(); nFirst += nRowPixels, nOffset += nRowBytes) {
        if (!file.Read(nOffset, vfRow.data(), nRowBytes))
            return false;
        image.Split(vfRow.data(), nRowPixels, nFirst);
    }
    return true;
}

} // namespace

PixelBuffer ToneMapScaledImage(const float* pfPixels, std::int32_t nWidth, std::int32_t nHeight,
                               float fExposure, float fGamma, ProgbarSetter* pProgress)
{
    const float* const pHDRImage = pfPixels;
    LS_ASSERT(pHDRImage != NULL); // NOLINT(modernize-use-nullptr): the text goes to the log
    LS_ASSERT(nWidth > 0);
    LS_ASSERT(nHeight > 0);
    HDRImage image(nWidth, nHeight);
    image.Split(pHDRImage, image.Pixels(), 0);
    Report(pProgress, 3);
    return MapPlanes(image, fExposure, fGamma, 4, 98, pProgress);
}

PixelBuffer ToneMapCacheInMemory(const std::wstring& sFile, std::int32_t nWidth, std::int32_t nHeight,
                                 float fExposure, float fGamma, ProgbarSetter* pProgress)
{
    LS_ASSERT(nWidth > 0);
    LS_ASSERT(nHeight > 0);
    HDRImage image(nWidth, nHeight);
    if (!ReadPlanes(sFile, image))
        return nullptr;
    Report(pProgress, 5);
    return MapPlanes(image, fExposure, fGamma, 6, 97, pProgress);
}
