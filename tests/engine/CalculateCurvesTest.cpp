// Recovery from source cache files to curves, against scenes whose camera is known.
#include "tests/engine/SeriesFixture.h"
#include "tests/support/FailureRecorder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <string>

using namespace LS::Tests;

namespace {

class Recovery : public SeriesFixture {
protected:
    /// The 768 values of the curves; none after a failure, which leaves lines.
    std::vector<float> Recovered()
    {
        OwnedCurves curves;
        std::vector<float> vfCurves;
        const bool bDone = Recover(curves);
        EXPECT_EQ(bDone, !curves.Get().empty());
        for (const float* const pfCurve : curves.Get())
            vfCurves.insert(vfCurves.end(), pfCurve, pfCurve + CURVE_ENTRIES);
        return vfCurves;
    }

    FailureRecorder failures;
};

/// RMS of the differences from their mean.
double Spread(const std::vector<double>& vdDifferences)
{
    double dSum = 0, dSquares = 0;
    for (const double d : vdDifferences) {
        dSum += d;
        dSquares += d * d;
    }
    const auto dCount = static_cast<double>(vdDifferences.size());
    return std::sqrt(dSquares / dCount - (dSum / dCount) * (dSum / dCount));
}

/// How far a curve's logarithm is from the truth, up to a constant, over the values that matter.
double CurveError(const float* pfCurve, const FilmResponse& response)
{
    std::vector<double> vdDifferences;
    for (int z = 30; z <= 235; ++z)
        vdDifferences.push_back(std::log(static_cast<double>(pfCurve[z])) - response.LogExposure(z));
    return Spread(vdDifferences);
}

TEST_F(Recovery, OfAFilmLikeResponse)
{
    const SyntheticScene scene = RenderScene(300, 200);
    for (const auto& [nImages, dContrast] : {std::pair{5, 0.8}, {6, 1.5}, {9, 1.0}}) {
        const FilmResponse response{dContrast};
        Photograph(scene, nImages, 2.5, response);
        const std::vector<float> vfCurves = Recovered();
        ASSERT_EQ(3 * CURVE_ENTRIES, vfCurves.size());
        EXPECT_TRUE(std::all_of(vfCurves.begin(), vfCurves.end(), [](float f) { return f > 0; }));
        for (std::size_t c = 0; c < 3; ++c) {
            const float* const pfCurve = &vfCurves[c * CURVE_ENTRIES];
            const RecoveryReport::Channel& channel = report.channels[c];
            EXPECT_LT(CurveError(pfCurve, response), 0.01) << nImages << " images, channel " << c;
            EXPECT_EQ(4 * (256 / nImages), channel.nSamples);
            EXPECT_GE(channel.nHigh - channel.nLow, 50);
            EXPECT_EQ(10, std::count(pfCurve + 246, pfCurve + 256, pfCurve[246]));
            EXPECT_EQ(pfCurve[0], pfCurve[channel.nLow]);
            // The anchor is the node at or just below the 128th value, not three values below it.
            EXPECT_LT(pfCurve[channel.nLow + 124], 1.0F);
            EXPECT_GE(pfCurve[channel.nLow + 127], 1.0F);
        }
    }
    EXPECT_TRUE(failures.Lines().empty());
}

TEST_F(Recovery, OfADimChannelKeepsItsScale)
{
    const FilmResponse response{};
    SyntheticScene scene = RenderScene(300, 200);
    const double dBrightest = std::exp(response.LogExposure(90)) / Bracket(2, 8).back();
    for (std::size_t n = 2; n < scene.vdRadiances.size(); n += 3)
        scene.vdRadiances[n] = std::min(scene.vdRadiances[n], dBrightest);
    Photograph(scene, 2, 8, response);
    const std::vector<float> vfCurves = Recovered();
    ASSERT_FALSE(vfCurves.empty()) << testing::PrintToString(failures.Lines());
    EXPECT_LT(report.channels[2].nHigh, 127);
    for (std::size_t c = 0; c < 3; ++c) {
        const RecoveryReport::Channel& channel = report.channels[c];
        const auto nAnchor = static_cast<std::size_t>(std::min(channel.nLow + 127, channel.nHigh));
        // Red 1.021, green 1.003: their anchors are the nodes below the value.
        EXPECT_NEAR(1.0F, vfCurves[c * CURVE_ENTRIES + nAnchor], 0.025) << "channel " << c;
    }
}

TEST_F(Recovery, InAnyOrderGivesTheSameBits)
{
    Photograph(64, 48, 4, 3);
    const std::vector<float> vfSorted = Recovered();
    EXPECT_EQ(1024, report.channels[0].nSamples * 4) << "no more than 256";
    series = Reordered(series, {1, 3, 0, 2});
    EXPECT_EQ(vfSorted, Recovered());
    EXPECT_EQ(3 * CURVE_ENTRIES, vfSorted.size());
}

TEST_F(Recovery, DecimatesLargeImages)
{
    // Every second pixel of every second row is the scene; what lies between would spoil it.
    const SyntheticScene scene = RenderScene(60, 300);
    Photograph(scene, 9, 2);
    const std::vector<float> vfSmall = Recovered();
    EXPECT_FALSE(vfSmall.empty());

    SyntheticScene large{121, 601, std::vector<double>(std::size_t{3} * 121 * 601, 1.0)};
    for (std::size_t y = 0; y < 300; ++y)
        for (std::size_t x = 0; x < 60; ++x)
            std::copy_n(&scene.vdRadiances[3 * (60 * y + x)], 3, &large.vdRadiances[6 * (121 * y + x)]);
    Photograph(large, 9, 2);
    EXPECT_EQ(vfSmall, Recovered());
}

TEST_F(Recovery, FailuresLeaveNothingButALine)
{
    Photograph(40, 30, 9, 2);
    const SyntheticSeries good = series;
    const Bytes allBlack(1200, 0), allBlue(1200, 255);
    WriteSource(folder.File("blue.tmp"), {allBlack, allBlack, allBlue});
    WriteElements(folder.File("short.tmp"), Bytes(4 * 1200 - 1));

    const struct {
        const char* name;
        std::function<void(SyntheticSeries&)> spoil;
        std::string sLine;
    } cases[] = {
        {"one image", [](auto& s) { s = Reordered(s, {4}); }, "fewer than two images"},
        {"narrow", [](auto& s) { s.nWidth = 9; }, "smaller than 10 pixels"},
        {"a strip", [](auto& s) { s.nWidth = 10, s.nHeight = 600000; }, "too narrow"},
        {"short source", [&](auto& s) { s.vsFiles[8] = folder.WideFile("short.tmp"); },
         "short.tmp: the file is too"},
        {"no time", [](auto& s) { s.vfShutters[2] = 0; }, "source2.tmp: the exposure is not finite"},
        {"absurd gain", [](auto& s) { s.vfGains[8] = 1e30F; }, "the curve is not finite"},
        {"equal images", [](auto& s) { s.vsFiles.assign(9, s.vsFiles[4]); }, "too little range"},
        {"one pure blue image", [&](auto& s) { s.vsFiles[0] = folder.WideFile("blue.tmp"); },
         "too few distinct values: its images show 0 in red; a curve of 9 images needs 112"},
    };
    std::vector<testing::Matcher<std::string>> lines;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        series = good;
        c.spoil(series);
        EXPECT_TRUE(Recovered().empty());
        lines.emplace_back(testing::HasSubstr(c.sLine));
        EXPECT_THAT(failures.Lines(), testing::ElementsAreArray(lines));
    }
}

} // namespace
