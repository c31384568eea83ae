// A merge within this process, with whatever may go wrong around it.
#include "tests/faults/MergeFixture.h"

#include "Util/Paths.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "engine/OwnedCurves.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <utility>

namespace LS::Tests {

ActingProgress::ActingProgress(int nAt, std::function<void()> act) : m_nAt(nAt), m_act(std::move(act)) {}

bool ActingProgress::Update(int value, const wxString&, bool*)
{
    if (value >= m_nAt)
        if (const auto act = std::exchange(m_act, {}))
            act();
    return true;
}

std::optional<Bytes> Merge(const SyntheticSeries& series, Curves curves, ProgressTarget* pTarget)
{
    OwnedCurves owned;
    if (curves == Curves::Standard)
        LoadCurves(nullptr, owned.Get());
    ProgbarSetter setter(pTarget, -1, 0, 100);
    std::int32_t nWidth = 0, nHeight = 0;
    const Util::PixelBuffer pPixels(CreateHDRImage(
        series.vsFiles, series.nWidth, series.nHeight, series.vfShutters, series.vfStops, series.vfGains,
        series.vfNDs, owned.Get(), &nWidth, &nHeight, pTarget ? &setter : nullptr));
    if (!pPixels)
        return std::nullopt;
    owned.Release();
    return Bytes(pPixels.get(), pPixels.get() + std::ptrdiff_t{3} * nWidth * nHeight);
}

bool MergeToFile(const SyntheticSeries& series)
{
    ResetWorkspace();
    OwnedCurves curves;
    if (!LoadCurves(nullptr, curves.Get()) ||
        !MergeExposures(series.vsFiles, series.nWidth, series.nHeight, series.vfShutters, series.vfStops,
                        series.vfGains, series.vfNDs, curves.Get(), nullptr, &Workspace()))
        return false;
    curves.Release();
    return true;
}

Util::PixelBuffer MapWithProgress(std::int32_t& nWidth, std::int32_t& nHeight, ProgressTarget* pTarget)
{
    ActingProgress silent(1000, [] {});
    ProgbarSetter setter(pTarget ? pTarget : &silent, -1, 0, 100);
    return Util::PixelBuffer(ToneMapFull(0, 2.2F, &nWidth, &nHeight, &setter));
}

Results ResultsOf(const SyntheticSeries& series)
{
    const TempFolder folder;
    Results results;
    results.preview = Merge(series, Curves::Standard);
    if (!results.preview)
        return results;
    for (std::int32_t nFormat = 0; nFormat < 3; ++nFormat) {
        EXPECT_TRUE(SaveHDRFile(folder.File("out").c_str(), nFormat, nullptr));
        results.files[static_cast<std::size_t>(nFormat)] = ReadBytes(folder.File("out"));
    }
    std::int32_t nWidth = 0, nHeight = 0;
    const Util::PixelBuffer pPixels = MapWithProgress(nWidth, nHeight);
    EXPECT_TRUE(pPixels && nWidth == series.nWidth && nHeight == series.nHeight);
    if (pPixels)
        results.mapped.assign(pPixels.get(), pPixels.get() + std::ptrdiff_t{3} * nWidth * nHeight);
    return results;
}

SyntheticSeries PlainSeries(const TempFolder& folder, std::int32_t nWidth, std::int32_t nHeight, int nImages)
{
    SyntheticSeries series{nWidth, nHeight, {}, {}, {}, {}, {}};
    const auto nPixels = static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight);
    Bytes pixels(4 * nPixels);
    for (int i = 0; i < nImages; ++i) {
        const double dShutter = 0.01 * (i + 1);
        for (std::size_t p = 0; p < nPixels; ++p)
            for (std::size_t c = 1; c < 4; ++c) {
                const double dScene = 0.05 + static_cast<double>((p * 37 + c * 11) % 1000) / 100;
                pixels[4 * p + c] = static_cast<unsigned char>(
                    std::min(255.0, 255 * dScene * dShutter / (0.02 + dScene * dShutter)));
            }
        const std::string sName = "plain" + std::to_string(i) + ".tmp";
        WriteElements(folder.File(sName), pixels);
        series.vsFiles.push_back(folder.WideFile(sName));
        series.vfShutters.push_back(static_cast<float>(dShutter));
    }
    series.vfStops.assign(series.vsFiles.size(), 8.0F);
    series.vfGains.assign(series.vsFiles.size(), 3.0F);
    series.vfNDs.assign(series.vsFiles.size(), 0.0F);
    return series;
}

std::string FloatCachePath()
{
    return Util::NarrowPath(Workspace().sHDRFile);
}

long MemoryInUse(const char* szField)
{
    std::ifstream status("/proc/self/status");
    std::string sWord;
    while (status >> sWord && sWord != szField) {
    }
    long nKilobytes = 0;
    status >> nKilobytes;
    return nKilobytes;
}

} // namespace LS::Tests
