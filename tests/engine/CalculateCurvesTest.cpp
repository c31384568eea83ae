// Recovery from source cache files to curves, against scenes whose camera is known.
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "engine/OwnedCurves.h"
#include "engine/RecoveryReport.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/SyntheticSeries.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <string>

using namespace LS::Tests;
using testing::HasSubstr;

namespace {

/// The arguments of one recovery, and its curves as long as nobody else owns them.
struct Recovery {
    explicit Recovery(SyntheticSeries s) : series(std::move(s)) {}
    Recovery(const Recovery&) = delete;
    Recovery& operator=(const Recovery&) = delete;
    ~Recovery() { ResetWorkspace(); }

    bool Run()
    {
        return CalculateCurves(series.vsFiles, series.nWidth, series.nHeight, series.vfShutters,
                               series.vfStops, series.vfGains, series.vfNDs, curves.Get(), nullptr, &report);
    }
    const float* Curve(std::size_t nChannel) { return curves.Get()[nChannel]; }

    SyntheticSeries series;
    OwnedCurves curves;
    RecoveryReport report;
};

/// Positive numbers that are equal have the same bits.
bool SameCurves(Recovery& a, Recovery& b)
{
    const auto& vA = a.curves.Get();
    const auto& vB = b.curves.Get();
    return std::equal(vA.begin(), vA.end(), vB.begin(), vB.end(),
                      [](const float* p, const float* q) { return std::equal(p, p + 256, q); });
}

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

TEST(CalculateCurves, RecoversAFilmLikeResponse)
{
    const SyntheticScene scene = RenderScene(300, 200);
    for (const auto& [nImages, dContrast] : {std::pair{5, 0.8}, {6, 1.5}, {9, 1.0}}) {
        const FilmResponse response{dContrast};
        const TempFolder folder;
        FailureRecorder failures;
        Recovery recovery(Photograph(folder, scene, response, Bracket(nImages, 2.5)));
        ASSERT_TRUE(recovery.Run());
        ASSERT_EQ(3U, recovery.curves.Get().size());
        EXPECT_TRUE(failures.Lines().empty());
        for (std::size_t c = 0; c < 3; ++c) {
            const float* const pfCurve = recovery.Curve(c);
            const RecoveryReport::Channel& report = recovery.report.channels[c];
            EXPECT_LT(CurveError(pfCurve, response), 0.01) << nImages << " images, channel " << c;
            EXPECT_EQ(4 * (256 / nImages), report.nSamples);
            EXPECT_GE(report.nHigh - report.nLow, 50);
            EXPECT_TRUE(std::all_of(pfCurve, pfCurve + 256, [](float f) { return f > 0; }));
            EXPECT_TRUE(
                std::all_of(pfCurve + 246, pfCurve + 256, [&](float f) { return f == pfCurve[246]; }));
            EXPECT_EQ(pfCurve[0], pfCurve[report.nLow]);
            // The anchor is the node at or just below the 128th value, not three values below it.
            EXPECT_LT(pfCurve[report.nLow + 124], 1.0F);
            EXPECT_GE(pfCurve[report.nLow + 127], 1.0F);
        }
    }
}

TEST(CalculateCurves, ADimChannelKeepsItsScale)
{
    const FilmResponse response{};
    const auto vdShutters = Bracket(2, 8);
    SyntheticScene scene = RenderScene(300, 200);
    const double dBrightest = std::exp(response.LogExposure(90)) / vdShutters.back();
    for (std::size_t n = 2; n < scene.vdRadiances.size(); n += 3)
        scene.vdRadiances[n] = std::min(scene.vdRadiances[n], dBrightest);
    const TempFolder folder;
    FailureRecorder failures;
    Recovery recovery(Photograph(folder, scene, response, vdShutters));
    ASSERT_TRUE(recovery.Run()) << testing::PrintToString(failures.Lines());
    EXPECT_LT(recovery.report.channels[2].nHigh, 127);
    for (std::size_t c = 0; c < 3; ++c) {
        const RecoveryReport::Channel& report = recovery.report.channels[c];
        const std::int32_t nAnchor = std::min(report.nLow + 127, report.nHigh);
        // Red 1.021, green 1.003: their anchors are the nodes below the value.
        EXPECT_NEAR(1.0F, recovery.Curve(c)[nAnchor], 0.025) << "channel " << c;
    }
}

TEST(CalculateCurves, AnyOrderGivesTheSameBits)
{
    const TempFolder folder;
    Recovery sorted(Photograph(folder, RenderScene(64, 48), FilmResponse{}, Bracket(4, 3)));
    ASSERT_TRUE(sorted.Run());
    Recovery shuffled(Reordered(sorted.series, {1, 3, 0, 2}));
    ASSERT_TRUE(shuffled.Run());
    EXPECT_TRUE(SameCurves(sorted, shuffled));
}

TEST(CalculateCurves, DecimatesLargeImages)
{
    // Every second pixel of every second row is the scene; what lies between would spoil it.
    const SyntheticScene scene = RenderScene(60, 300);
    const TempFolder folder;
    Recovery small(Photograph(folder, scene, FilmResponse{}, Bracket(9, 2)));
    ASSERT_TRUE(small.Run());

    const TempFolder largeFolder;
    SyntheticScene large{121, 601, std::vector<double>(std::size_t{3} * 121 * 601, 1.0)};
    for (std::size_t y = 0; y < 300; ++y)
        for (std::size_t x = 0; x < 60; ++x)
            std::copy_n(&scene.vdRadiances[3 * (60 * y + x)], 3, &large.vdRadiances[6 * (121 * y + x)]);
    Recovery decimated(Photograph(largeFolder, large, FilmResponse{}, Bracket(9, 2)));
    ASSERT_TRUE(decimated.Run());
    EXPECT_TRUE(SameCurves(small, decimated));
}

TEST(CalculateCurves, FailuresLeaveNothingButALine)
{
    const TempFolder folder;
    const SyntheticSeries good = Photograph(folder, RenderScene(40, 30), FilmResponse{}, Bracket(9, 2));
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
        {"missing source", [&](auto& s) { s.vsFiles[8] = folder.WideFile("none"); }, "none: No such file"},
        {"short source", [&](auto& s) { s.vsFiles[8] = folder.WideFile("short.tmp"); },
         "short.tmp: the file is too"},
        {"no time", [](auto& s) { s.vfShutters[2] = 0; }, "source2.tmp: the exposure is not finite"},
        {"absurd gain", [](auto& s) { s.vfGains[8] = 1e30F; }, "the curve is not finite"},
        {"equal images", [](auto& s) { s.vsFiles.assign(9, s.vsFiles[4]); }, "too little range"},
        {"one pure blue image", [&](auto& s) { s.vsFiles[0] = folder.WideFile("blue.tmp"); },
         "too few distinct values: its images show 0 in red; a curve of 9 images needs 112"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FailureRecorder failures;
        Recovery recovery(good);
        c.spoil(recovery.series);
        EXPECT_FALSE(recovery.Run());
        EXPECT_TRUE(recovery.curves.Get().empty());
        EXPECT_THAT(failures.Lines(), testing::ElementsAre(HasSubstr(c.sLine)));
    }
}

} // namespace
