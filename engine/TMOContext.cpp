// The stages of tone mapping on planes.
#include "engine/TMOContext.h"

#include "Util/FailureLog.h"
#include "engine/Colour.h"
#include "engine/DisplayCurve.h"
#include "engine/HDRWorkspace.h"
#include "engine/LuminanceCompression.h"
#include "engine/ProgbarSetter.h"

#include <algorithm>

HDRImage::HDRImage(std::int32_t nImageWidth, std::int32_t nImageHeight)
    : nWidth(nImageWidth), nHeight(nImageHeight)
{
    for (auto& pfPlane : ppfPlanes)
        pfPlane = LS::Util::MakeLargeBuffer<float>(Pixels());
}

void HDRImage::Split(const float* pfPixels, std::size_t nPixels, std::size_t nFirst)
{
    float *pfRed = ppfPlanes[0].get(), *pfGreen = ppfPlanes[1].get(), *pfBlue = ppfPlanes[2].get();
    for (std::size_t i = nFirst; i < nFirst + nPixels; ++i, pfPixels += 3) {
        pfRed[i] = pfPixels[0];
        pfGreen[i] = pfPixels[1];
        pfBlue[i] = pfPixels[2];
    }
}

BytePlanes::BytePlanes(std::size_t nPixels) : pBytes(LS::Util::MakeLargeBuffer<unsigned char>(3 * nPixels))
{
    for (std::size_t c = 0; c < apPlanes.size(); ++c)
        apPlanes[c] = &pBytes[c * nPixels];
}

TMOContext::TMOContext(HDRImage* pSource, float fStops, float fDisplayGamma, float fToneBias)
    : pImage(pSource), nWidth(pSource ? pSource->nWidth : -1), nHeight(pSource ? pSource->nHeight : -1),
      fExposure(fStops), fGamma(fDisplayGamma), fBias(fToneBias)
{
}

std::unique_ptr<BytePlanes> TMOContext::Run(ProgbarSetter* pProgress)
{
    if (!HasPlanes()) {
        LS::Util::LogFailure("tone map", "", "there is no image");
        return nullptr;
    }

    float fMax = 0, fLogAverage = 0;
    Statistics(&fMax, &fLogAverage);
    Report(pProgress, 10);
    if (!Compress(fMax, fLogAverage, pProgress))
        return nullptr;

    const auto goOn = [pProgress](std::int32_t nPercent) {
        Report(pProgress, nPercent);
        return !Workspace().bCancel;
    };
    const DisplayBytes displayBytes(fGamma);
    if (displayBytes.HasTable())
        return ToBytesAtOnce(displayBytes, goOn);
    return ToBytesByStages(goOn);
}

std::unique_ptr<BytePlanes> TMOContext::ToBytesByStages(const GoOn& goOn)
{
    ToRGB();
    if (!goOn(60))
        return nullptr;
    Gamma();
    if (!goOn(75))
        return nullptr;
    Clamp();
    if (!goOn(90))
        return nullptr;
    auto pPlanes = ToBytes();
    if (!goOn(100))
        return nullptr;
    return pPlanes;
}

std::unique_ptr<BytePlanes> TMOContext::ToBytesAtOnce(const DisplayBytes& displayBytes, const GoOn& goOn)
{
    constexpr std::size_t PIECE = 2048; // pixels that stay in the processor's cache from stage to stage
    const std::size_t nPixels = pImage->Pixels();
    auto pPlanes = std::make_unique<BytePlanes>(nPixels);
    // A quarter of the image takes the place of a stage, so that the positions stay.
    std::size_t nDone = 0, nQuarter = 0;
    for (const std::int32_t nPercent : {60, 75, 90, 100}) {
        const std::size_t nEnd = ++nQuarter * nPixels / 4;
        for (std::size_t nCount = 0; nDone < nEnd; nDone += nCount) {
            nCount = std::min(PIECE, nEnd - nDone);
            PlanesToRGB(&Plane(0)[nDone], &Plane(1)[nDone], &Plane(2)[nDone], nCount);
            for (std::size_t c = 0; c < pPlanes->apPlanes.size(); ++c)
                displayBytes.Convert(Plane(c).subspan(nDone, nCount), pPlanes->apPlanes[c] + nDone);
        }
        if (!goOn(nPercent))
            return nullptr;
    }
    return pPlanes;
}

void TMOContext::Statistics(float* pfMax, float* pfLogAverage)
{
    float fSumLog = 0;
    *pfMax = MAX_START_IN_MEMORY;
    PlanesToYxy(Plane(0).data(), Plane(1).data(), Plane(2).data(), pImage->Pixels(), &fSumLog, pfMax);
    *pfLogAverage = LogAverage(fSumLog, nWidth, nHeight);
}

bool TMOContext::Compress(float fMax, float fLogAverage, ProgbarSetter* pProgress)
{
    const ToneCurve curve(fExposure, fMax, fLogAverage, fBias);
    return CompressPlane(Plane(0).data(), nWidth, nHeight, curve, [&](std::int32_t y) {
        Report(pProgress, static_cast<std::int32_t>(static_cast<double>(y) / nHeight * 40 + 10));
        return !Workspace().bCancel;
    });
}

void TMOContext::ToRGB()
{
    PlanesToRGB(Plane(0).data(), Plane(1).data(), Plane(2).data(), pImage->Pixels());
}

void TMOContext::Gamma()
{
    for (std::size_t c = 0; c < pImage->ppfPlanes.size(); ++c)
        GammaCorrect(Plane(c), fGamma);
}

void TMOContext::Clamp()
{
    for (std::size_t c = 0; c < pImage->ppfPlanes.size(); ++c)
        ClampTop(Plane(c));
}

std::unique_ptr<BytePlanes> TMOContext::ToBytes() const
{
    auto pPlanes = std::make_unique<BytePlanes>(pImage->Pixels());
    for (std::size_t c = 0; c < pPlanes->apPlanes.size(); ++c)
        FloatToBytes(Plane(c), pPlanes->apPlanes[c]);
    return pPlanes;
}

bool TMOContext::HasPlanes() const
{
    return pImage && std::all_of(pImage->ppfPlanes.begin(), pImage->ppfPlanes.end(),
                                 [](const auto& pfPlane) { return pfPlane != nullptr; });
}

std::span<float> TMOContext::Plane(std::size_t nChannel) const
{
    return {pImage->ppfPlanes[nChannel].get(), pImage->Pixels()};
}
