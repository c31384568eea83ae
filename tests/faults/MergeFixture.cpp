// A merge within this process, with whatever may go wrong around it.
#include "tests/faults/MergeFixture.h"

namespace LS::Tests {

Bytes MergeFixture::Preview(CurveKind curves, ProgressTarget* pTarget)
{
    OwnedCurves owned;
    if (curves == CurveKind::Standard)
        LoadCurves(nullptr, owned.Get());
    ProgbarSetter setter(pTarget, -1, 0, 100);
    return Create(owned, pTarget ? &setter : nullptr);
}

Bytes MergeFixture::MapWithProgress()
{
    ActingProgress silent(1000, [] {});
    ProgbarSetter setter = silent.Setter();
    return MapFull(&setter);
}

Results MergeFixture::ResultsOfSeries()
{
    Results results;
    results.preview = Preview(CurveKind::Standard);
    if (results.preview.empty())
        return results;
    for (std::int32_t nFormat = 0; nFormat < 3; ++nFormat) {
        EXPECT_TRUE(SaveHDRFile(folder.File("out").c_str(), nFormat, nullptr));
        results.files[static_cast<std::size_t>(nFormat)] = ReadBytes(folder.File("out"));
    }
    results.mapped = MapWithProgress();
    EXPECT_TRUE(nOutWidth == series.nWidth && nOutHeight == series.nHeight);
    return results;
}

void MergeFixture::TakeGradients(std::int32_t nWidth, std::int32_t nHeight, int nImages)
{
    series = {nWidth, nHeight, {}, {}, {}, {}, {}};
    const auto nPixels = static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight);
    Bytes pixels(4 * nPixels);
    for (int i = 0; i < nImages; ++i) {
        const double dShutter = 0.01 * (i + 1);
        for (std::size_t p = 0; p < nPixels; ++p)
            for (std::size_t c = 1; c < 4; ++c) {
                const double dLight = dShutter * (0.05 + static_cast<double>((p * 37 + c * 11) % 1000) / 100);
                pixels[4 * p + c] = static_cast<unsigned char>(255 * dLight / (0.02 + dLight));
            }
        const std::string sName = "plain" + std::to_string(i) + ".tmp";
        WriteElements(folder.File(sName), pixels);
        series.vsFiles.push_back(folder.WideFile(sName));
        series.vfShutters.push_back(static_cast<float>(dShutter));
    }
    series.vfStops.assign(series.vsFiles.size(), 8.0F);
    series.vfGains.assign(series.vsFiles.size(), 3.0F);
    series.vfNDs.assign(series.vsFiles.size(), 0.0F);
}

} // namespace LS::Tests
