// One exposure of a series in memory.
#include "engine/LDRImage.h"

#include "Util/Assertion.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace {

float LogExposure(double dShutter, double dStop, double dGain, double dND)
{
    return static_cast<float>(std::log(512.0) - std::log(dStop * dStop * (1.0 / dShutter)) + dGain / 3.0 -
                              dND);
}

} // namespace

LDRImage::LDRImage(std::vector<Plane> vPlanes, std::int32_t nImageWidth, std::int32_t nImageHeight,
                   float fImageShutter, float fImageStop, float fImageGain, float fImageND)
    : fLogExposure(LogExposure(fImageShutter, fImageStop, fImageGain, fImageND)),
      ppPlanes(std::move(vPlanes)), nWidth(nImageWidth), nHeight(nImageHeight), fShutter(fImageShutter),
      fStop(fImageStop), fGain(fImageGain), fND(fImageND)
{
    const std::size_t nPixels = static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight);
    LS_ASSERT(ppPlanes.size() == static_cast<std::size_t>(nChannels));
    LS_ASSERT(std::all_of(ppPlanes.begin(), ppPlanes.end(),
                          [nPixels](const Plane& plane) { return plane.size() == nPixels; }));
}
