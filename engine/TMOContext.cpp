// The stages of tone mapping on planes.
#include "engine/TMOContext.h"

#include "Util/FailureLog.h"
#include "engine/Colour.h"
#include "engine/DisplayCurve.h"
#include "engine/HDRWorkspace.h"
#include "engine/LuminanceCompression.h"
#include "engine/ProgbarSetter.h"

#include <algorithm>
#include <utility>

HDRImage::HDRImage(std::int32_t nImageWidth, std::int32_t nImageHeight)
    : nWidth(nImageWidth), nHeight(nImageHeight)
{
    for (auto& pfPlane : ppfPlanes)
        pfPlane = std::make_unique_for_overwrite<float[]>(Pixels());
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
    ToRGB();
    if (!goOn(60))
        return nullptr;
    const DisplayBytes displayBytes(fGamma);
    return displayBytes.HasTable() ? ToBytesAtOnce(displayBytes, goOn) : ToBytesByStages(goOn);
}

std::unique_ptr<BytePlanes> TMOContext::ToBytesByStages(const GoOn& goOn)
{
    Gamma();
    if (!goOn(75))
        return nullptr;
    Clamp();
    if (!goOn(90))
        return nullptr;
    auto pPlanes = ToBytes();
    return goOn(100) ? std::move(pPlanes) : nullptr;
}

std::unique_ptr<BytePlanes> TMOContext::ToBytesAtOnce(const DisplayBytes& displayBytes, const GoOn& goOn)
{
    // A plane takes the place of a stage, so that the positions stay.
    constexpr std::int32_t PERCENT_AFTER[] = {75, 90, 100};
    auto pPlanes = std::make_unique<BytePlanes>();
    for (std::size_t c = 0; c < pPlanes->size(); ++c) {
        (*pPlanes)[c] = std::make_unique_for_overwrite<unsigned char[]>(pImage->Pixels());
        displayBytes.Convert(Plane(c), (*pPlanes)[c].get());
        if (!goOn(PERCENT_AFTER[c]))
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
    auto pPlanes = std::make_unique<BytePlanes>();
    for (std::size_t c = 0; c < pPlanes->size(); ++c) {
        (*pPlanes)[c] = std::make_unique_for_overwrite<unsigned char[]>(pImage->Pixels());
        FloatToBytes(Plane(c), (*pPlanes)[c].get());
    }
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
