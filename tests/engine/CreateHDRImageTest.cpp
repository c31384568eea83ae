// The whole of "create HDR" with curves given or recovered: preview, progress, and who owns the curves
// afterwards.
#include "engine/HDRRoutine.h"

#include "Util/Paths.h"
#include "Util/PixelBuffer.h"
#include "engine/CacheFolder.h"
#include "engine/HDRWorkspace.h"
#include "engine/OwnedCurves.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/RecordingProgress.h"
#include "tests/support/SyntheticSeries.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>

namespace LS::Tests {

namespace {

using Util::PixelBuffer;

/// Two exposures of a ramp, with curves of the caller.
class CreateHDRImageTest : public testing::Test {
protected:
    CreateHDRImageTest()
    {
        for (const int nImage : {0, 1}) {
            Bytes pixels;
            for (int i = 0; i < WIDTH * HEIGHT; ++i)
                for (int c = 0; c < 4; ++c)
                    pixels.push_back(static_cast<unsigned char>(20 + i * 2 + 9 * c + 60 * nImage));
            const std::string sName = "source" + std::to_string(nImage) + ".tmp";
            WriteElements(folder.File(sName), pixels);
            vsSources.push_back(folder.WideFile(sName));
        }
        LoadCurves(nullptr, vafCurves);
    }

    ~CreateHDRImageTest() override
    {
        DeleteCallersCurves();
        ResetWorkspace();
    }

    void DeleteCallersCurves()
    {
        if (Workspace().vafCurves.empty())
            for (const float* pCurve : vafCurves)
                delete[] pCurve;
        vafCurves.clear();
    }

    PixelBuffer Create(ProgbarSetter* pProgress)
    {
        return PixelBuffer(CreateHDRImage(vsSources, WIDTH, HEIGHT, {0.01F, 0.04F}, {8, 8}, {3, 3}, {0, 0},
                                          vafCurves, &nOutWidth, &nOutHeight, pProgress));
    }

    static void ExpectEmptyWorkspace()
    {
        EXPECT_FALSE(Workspace().bCancel);
        EXPECT_EQ(0, Workspace().nWidth);
        EXPECT_EQ(0, Workspace().nScaledHeight);
        EXPECT_TRUE(Workspace().sHDRFile.empty());
        EXPECT_FALSE(Workspace().pfScaled);
        EXPECT_TRUE(Workspace().vafCurves.empty());
    }

    static constexpr std::int32_t WIDTH = 12, HEIGHT = 7;
    TempFolder folder;
    std::vector<std::wstring> vsSources;
    std::vector<float*> vafCurves;
    std::int32_t nOutWidth = -7, nOutHeight = -7;
};

TEST_F(CreateHDRImageTest, GivesThePreviewAtTheDefaults)
{
    RecordingProgress progress;
    ProgbarSetter setter = progress.Setter();
    const FailureRecorder failures;
    const PixelBuffer pPreview = Create(&setter);
    ASSERT_TRUE(pPreview);
    EXPECT_EQ(WIDTH, nOutWidth);
    EXPECT_EQ(HEIGHT, nOutHeight);
    EXPECT_EQ(vafCurves, Workspace().vafCurves);
    EXPECT_TRUE(failures.Lines().empty());

    std::int32_t nWidth = 0, nHeight = 0;
    const PixelBuffer pAgain(ToneMapScaled(0.0F, 2.2F, &nWidth, &nHeight));
    ASSERT_TRUE(pAgain);
    constexpr std::ptrdiff_t BYTES = std::ptrdiff_t{3} * WIDTH * HEIGHT;
    EXPECT_EQ(Bytes(pAgain.get(), pAgain.get() + BYTES), Bytes(pPreview.get(), pPreview.get() + BYTES));

    // Rows 0 to 6 and the end of the merge on 1..80. On 81..96: planes split; the tone mapper's statistics,
    // two bands and four stages; then its caller's own reports, which know nothing of the 96 before them.
    EXPECT_EQ((std::vector<int>{1, 12, 23, 34, 46, 57, 68, 80, 81, 82, 85, 87, 90, 92, 94, 96, 95, 96}),
              progress.Positions());
}

TEST_F(CreateHDRImageTest, SecondRunReplacesTheFirst)
{
    ASSERT_TRUE(Create(nullptr));
    const std::string sFirst = Util::NarrowPath(Workspace().sHDRFile);
    ASSERT_TRUE(std::filesystem::exists(sFirst));
    vafCurves.clear(); // the workspace's
    LoadCurves(nullptr, vafCurves);
    vsSources[1] = folder.WideFile("missing.tmp");
    const FailureRecorder failures;
    EXPECT_FALSE(Create(nullptr));
    EXPECT_FALSE(std::filesystem::exists(sFirst));
    EXPECT_EQ(3u, vafCurves.size()); // never taken over, so still the caller's
    EXPECT_EQ(1u, failures.Lines().size());
    ExpectEmptyWorkspace();
    EXPECT_FALSE(SaveCurves(folder.File("curve.crv").c_str()));
}

TEST_F(CreateHDRImageTest, CancelAtEveryPosition)
{
    RecordingProgress whole;
    ProgbarSetter wholeSetter = whole.Setter();
    ASSERT_TRUE(Create(&wholeSetter));
    const FailureRecorder failures;
    for (const int nPosition : whole.Positions()) {
        SCOPED_TRACE(nPosition);
        DeleteCallersCurves();
        LoadCurves(nullptr, vafCurves);
        nOutWidth = nOutHeight = -7;
        RecordingProgress progress(nPosition);
        ProgbarSetter setter = progress.Setter();
        EXPECT_FALSE(Create(&setter));
        EXPECT_EQ(-7, nOutWidth);
        EXPECT_EQ(-7, nOutHeight);
        ExpectEmptyWorkspace();
        // From its last row on the merge succeeds and takes the curves: they went with the workspace.
        EXPECT_EQ(nPosition < 68 ? 3u : 0u, vafCurves.size());
    }
    EXPECT_TRUE(failures.Lines().empty());
}

/// What CreateHDRImage leaves for a synthetic series.
Bytes PreviewOf(const SyntheticSeries& series, OwnedCurves& curves, ProgbarSetter* pProgress)
{
    std::int32_t nWidth = 0, nHeight = 0;
    const PixelBuffer pPreview(CreateHDRImage(series.vsFiles, series.nWidth, series.nHeight,
                                              series.vfShutters, series.vfStops, series.vfGains, series.vfNDs,
                                              curves.Get(), &nWidth, &nHeight, pProgress));
    if (!pPreview)
        return {};
    curves.Release();
    return {pPreview.get(), pPreview.get() + std::ptrdiff_t{3} * nWidth * nHeight};
}

TEST(CreateHDRImageRecovery, RecoversTheCurvesThatItIsNotGiven)
{
    const TempFolder folder;
    const SyntheticSeries series = Photograph(folder, RenderScene(90, 60), FilmResponse(), Bracket(5, 2.5));
    const FailureRecorder failures;
    RecordingProgress progress;
    ProgbarSetter setter = progress.Setter();
    OwnedCurves none, recovered;
    const Bytes preview = PreviewOf(series, none, &setter);
    ASSERT_FALSE(preview.empty());
    EXPECT_EQ(3U, Workspace().vafCurves.size());

    ASSERT_TRUE(CalculateCurves(series.vsFiles, series.nWidth, series.nHeight, series.vfShutters,
                                series.vfStops, series.vfGains, series.vfNDs, recovered.Get(), nullptr));
    EXPECT_EQ(preview, PreviewOf(series, recovered, nullptr));
    EXPECT_TRUE(failures.Lines().empty());
    ResetWorkspace();

    // Recovery on 1..80, the merge on 81..96, the preview on 97..99.
    const std::vector<int>& vnPositions = progress.Positions();
    for (const int nExpected : {80, 81, 96, 97, 99})
        EXPECT_NE(vnPositions.end(), std::find(vnPositions.begin(), vnPositions.end(), nExpected))
            << nExpected;
    EXPECT_EQ(99, vnPositions.back());
}

TEST(CreateHDRImageRecovery, FailsWithTheRecovery)
{
    const TempFolder folder;
    const SyntheticSeries single = Photograph(folder, RenderScene(40, 30), FilmResponse(), {1.0});
    const FailureRecorder failures;
    OwnedCurves none;
    EXPECT_TRUE(PreviewOf(single, none, nullptr).empty());
    EXPECT_TRUE(none.Get().empty());
    EXPECT_TRUE(Workspace().sHDRFile.empty());
    EXPECT_EQ(1U, failures.Lines().size());
}

} // namespace

} // namespace LS::Tests
