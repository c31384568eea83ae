// From source cache files to response curves: decimated copies in, three radiance tables out.
#include "engine/HDRRoutine.h"

#include "Util/Assertion.h"
#include "Util/FailureLog.h"
#include "Util/Paths.h"
#include "Util/RegularFile.h"
#include "engine/CHDRConstruct.h"
#include "engine/HDRWorkspace.h"
#include "engine/ResponseCurve.h"
#include "engine/ScaledSize.h"

#include <fcntl.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <exception>
#include <memory>
#include <utility>

namespace {

constexpr const char* STEP = "recover curves";
constexpr std::int32_t LEAST_SIZE = 10;       // pixels, either way
constexpr std::int32_t STATISTICS_ROWS = 300; // the copies have this many rows or up to twice as many
constexpr std::size_t CURVE_TOP = 246;        // from here on a curve is flat: hardly any reading is usable

bool Fail(const std::string& sFile, const char* szReason)
{
    LS::Util::LogFailure(STEP, sFile, szReason);
    return false;
}

/// Where the solving begins in the progress of the whole. Five per image, and room for the solving itself
/// however many images there are.
std::int32_t SolvingStart(std::size_t nImages)
{
    return static_cast<std::int32_t>(std::min<std::size_t>(5 * nImages, 95));
}

/// The decimated planes of a source cache file; empty if it can't be read, which is logged.
std::vector<LDRImage::Plane> ReadPlanes(const std::string& sFile, std::int32_t nWidth, std::int32_t nHeight,
                                        const ScaledSize& size)
{
    const std::size_t nRowBytes = 4 * static_cast<std::size_t>(nWidth);
    const LS::Util::RegularFile file(STEP, sFile, O_RDONLY);
    if (!file.Holds(nRowBytes * static_cast<std::size_t>(nHeight)))
        return {};

    const auto nColumns = static_cast<std::size_t>(size.nWidth);
    const auto nRows = static_cast<std::size_t>(size.nHeight);
    std::vector<LDRImage::Plane> vPlanes(CURVE_CHANNELS, LDRImage::Plane(nColumns * nRows));
    const std::size_t nStep = 4 * static_cast<std::size_t>(size.nStepX);
    std::vector<unsigned char> row(nRowBytes);
    std::size_t nPixel = 0;
    for (std::size_t y = 0; y < nRows; ++y) {
        if (!file.Read(y * static_cast<std::size_t>(size.nStepY) * nRowBytes, row.data(), nRowBytes))
            return {};
        const unsigned char* pPixel = row.data();
        for (std::size_t x = 0; x < nColumns; ++x, ++nPixel, pPixel += nStep) {
            vPlanes[0][nPixel] = pPixel[1];
            vPlanes[1][nPixel] = pPixel[2];
            vPlanes[2][nPixel] = pPixel[3];
        }
    }
    return vPlanes;
}

/// From logarithms to radiances. @return null if one of them is no positive number
Curve RadianceCurve(const float* pfLogCurve)
{
    auto pCurve = std::make_unique_for_overwrite<float[]>(CURVE_ENTRIES);
    for (std::size_t z = 0; z < CURVE_ENTRIES; ++z) {
        pCurve[z] = static_cast<float>(std::exp(static_cast<double>(pfLogCurve[std::min(z, CURVE_TOP)])));
        if (!std::isfinite(pCurve[z]) || pCurve[z] <= 0)
            return nullptr;
    }
    return pCurve;
}

/// Appends the three curves, or nothing.
bool TakeCurves(const CHDRConstruct& construct, std::vector<float*>& vafCurves)
{
    Curves curves;
    for (std::size_t c = 0; c < CURVE_CHANNELS; ++c) {
        curves[c] = RadianceCurve(construct.GetCurves()[c]->pfCurve.get());
        if (!curves[c])
            return Fail("", "the curve is not finite");
    }
    AppendCurves(curves, vafCurves);
    return true;
}

} // namespace

bool CalculateCurves(const std::vector<std::wstring>& vsLDRFiles, std::int32_t nWidth, std::int32_t nHeight,
                     const std::vector<float>& vfShutters, const std::vector<float>& vfStops,
                     const std::vector<float>& vfGains, const std::vector<float>& vfNDs,
                     std::vector<float*>& vafCurves, ProgbarSetter* pProgress, RecoveryReport* pReport)
{
    LS_ASSERT(vsLDRFiles.size() > 0);
    LS_ASSERT(vsLDRFiles.size() == vfShutters.size());
    LS_ASSERT(vsLDRFiles.size() == vfStops.size());
    LS_ASSERT(vsLDRFiles.size() == vfGains.size());
    LS_ASSERT(vsLDRFiles.size() == vfNDs.size());

    if (nWidth < LEAST_SIZE || nHeight < LEAST_SIZE)
        return Fail("", "the images are smaller than 10 pixels");
    if (vsLDRFiles.size() < 2)
        return Fail("", "fewer than two images");
    const ScaledSize size = Decimated(nWidth, nHeight, STATISTICS_ROWS);
    if (size.nWidth == 0)
        return Fail("", "the image is too narrow for its height");

    std::string sFile; // the one at hand, for the log
    try {
        CHDRConstruct construct(0, 0);
        const std::int32_t nSolvingStart = SolvingStart(vsLDRFiles.size());
        for (std::size_t i = 0; i < vsLDRFiles.size(); ++i) {
            sFile = LS::Util::NarrowPath(vsLDRFiles[i]);
            auto vPlanes = ReadPlanes(sFile, nWidth, nHeight, size);
            if (vPlanes.empty())
                return false;
            construct.AddImage(std::make_unique<LDRImage>(std::move(vPlanes), size.nWidth, size.nHeight,
                                                          vfShutters[i], vfStops[i], vfGains[i], vfNDs[i]));
            if (Workspace().bCancel) {
                ResetWorkspace();
                return false;
            }
            const auto nRead = static_cast<std::int32_t>(i) + 1;
            Report(pProgress, std::min(2 * nRead, nSolvingStart));
        }
        sFile.clear();

        SubProgress solving(pProgress, nSolvingStart, 99);
        const bool bConstructed = construct.Construct(solving.Get());
        if (pReport)
            *pReport = construct.GetReport();
        if (!bConstructed || !TakeCurves(construct, vafCurves))
            return false;
    } catch (const std::exception& e) {
        return Fail(sFile, e.what());
    }
    Report(pProgress, 100);
    return true;
}
