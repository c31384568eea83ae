// A merge within this process, with whatever may go wrong around it.
#include "tests/faults/MergeFixture.h"

#include "Util/Paths.h"
#include "Util/PixelBuffer.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "engine/OwnedCurves.h"

#include <algorithm>
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

ProgbarSetter ActingProgress::Setter()
{
    return {this, -1, 0, 100};
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
    series.vfStops.assign(static_cast<std::size_t>(nImages), 8.0F);
    series.vfGains.assign(static_cast<std::size_t>(nImages), 3.0F);
    series.vfNDs.assign(static_cast<std::size_t>(nImages), 0.0F);
    return series;
}

std::string FloatCachePath()
{
    return Util::NarrowPath(Workspace().sHDRFile);
}

} // namespace LS::Tests
