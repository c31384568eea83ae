// A merge within this process, with whatever may go wrong around it.
#include "tests/faults/MergeFixture.h"

namespace LS::Tests {

Results MergeFixture::ResultsOfSeries()
{
    Results results;
    OwnedCurves curves;
    LoadCurves(nullptr, curves.Get());
    results.preview = Create(curves);
    if (results.preview.empty())
        return results;
    for (std::int32_t nFormat = 0; nFormat < 3; ++nFormat) {
        EXPECT_TRUE(SaveHDRFile(folder.File("out").c_str(), nFormat, nullptr));
        results.files[static_cast<std::size_t>(nFormat)] = ReadBytes(folder.File("out"));
    }
    RecordingProgress progress; // with one the way depends on the size
    ProgbarSetter setter = progress.Setter();
    results.mapped = MapFull(&setter);
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
