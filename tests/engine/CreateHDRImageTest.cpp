// The whole of "create HDR" with curves given or recovered: preview, progress, and who owns the curves
// afterwards.
#include "engine/TMORoutine.h"
#include "tests/engine/SeriesFixture.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/RecordingProgress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <new>

namespace LS::Tests {

namespace {

using CreateHDRImageTest = SeriesFixture;

/// Finds no memory for what it would show.
class ExhaustedProgress : public ProgressTarget {
public:
    bool Update(int, const wxString&, bool*) override { throw std::bad_alloc(); }
};

} // namespace

TEST_F(CreateHDRImageTest, GivesThePreviewAtTheDefaults)
{
    Photograph(12, 7, 2);
    RecordingProgress progress;
    ProgbarSetter setter = progress.Setter();
    const FailureRecorder failures;
    OwnedCurves curves;
    LoadCurves(nullptr, curves.Get());
    const std::vector<float*> given = curves.Get();
    const Bytes preview = Create(curves, &setter);
    ASSERT_FALSE(preview.empty());
    EXPECT_EQ(12, nOutWidth);
    EXPECT_EQ(7, nOutHeight);
    EXPECT_EQ(given, Workspace().vafCurves);
    EXPECT_TRUE(failures.Lines().empty());

    RequestCancel(); // of something that is over
    EXPECT_EQ(preview, Taken(ToneMapScaled(0.0F, 2.2F, &nOutWidth, &nOutHeight)));
    const float* const pfScaled = Workspace().pfScaled.get();
    EXPECT_EQ(Taken(ToneMapScaledImage(pfScaled, 12, 7, -1.5F, 1.9F, nullptr).release()),
              Taken(ToneMapScaled(-1.5F, 1.9F, &nOutWidth, &nOutHeight)));

    // Rows 0 to 6 and the end of the merge on 1..80. On 81..96: planes split; the tone mapper's statistics,
    // two bands and four stages; then its caller's own reports, which know nothing of the 96 before them.
    EXPECT_EQ((std::vector<int>{1, 12, 23, 34, 46, 57, 68, 80, 81, 82, 85, 87, 90, 92, 94, 96, 95, 96}),
              progress.Positions());
}

TEST_F(CreateHDRImageTest, SecondRunReplacesTheFirst)
{
    Photograph(12, 7, 2);
    OwnedCurves curves;
    LoadCurves(nullptr, curves.Get());
    ASSERT_FALSE(Create(curves).empty());
    const std::string sFirst = Util::NarrowPath(Workspace().sHDRFile);
    ASSERT_TRUE(std::filesystem::exists(sFirst));
    LoadCurves(nullptr, curves.Get());
    std::filesystem::remove(File(1));
    const FailureRecorder failures;
    EXPECT_TRUE(Create(curves).empty());
    EXPECT_FALSE(std::filesystem::exists(sFirst));
    EXPECT_EQ(3U, curves.Get().size()); // never taken over, so still the caller's
    EXPECT_EQ(1U, failures.Lines().size());
    ExpectEmptyWorkspace();
}

TEST_F(CreateHDRImageTest, WantOfMemoryLeavesALogLine)
{
    Photograph(12, 7, 2);
    ExhaustedProgress exhausted;
    const auto setter = [&exhausted] {
        RecordingProgress().Setter(); // forgets the last position
        return ProgbarSetter(&exhausted, 0, 0, 100);
    };
    const FailureRecorder failures;
    OwnedCurves curves;
    LoadCurves(nullptr, curves.Get());
    ProgbarSetter creating = setter();
    EXPECT_TRUE(Create(curves, &creating).empty());
    ASSERT_TRUE(Merge());
    ProgbarSetter saving = setter();
    EXPECT_FALSE(SaveHDRFile(folder.File("x.hdr").c_str(), HDR_RADIANCE, &saving));
    EXPECT_THAT(failures.Lines(),
                testing::ElementsAre(testing::HasSubstr("create HDR image: "), testing::HasSubstr("save: ")));
}

TEST_F(CreateHDRImageTest, RecoversTheCurvesThatItIsNotGiven)
{
    Photograph(60, 40, 9, 2);
    const FailureRecorder failures;
    RecordingProgress progress;
    ProgbarSetter setter = progress.Setter();
    OwnedCurves none, recovered;
    const Bytes preview = Create(none, &setter);
    ASSERT_FALSE(preview.empty());
    EXPECT_EQ(3U, Workspace().vafCurves.size());
    ASSERT_TRUE(Recover(recovered, nullptr));
    EXPECT_EQ(preview, Create(recovered));
    EXPECT_TRUE(failures.Lines().empty());

    // Recovery on 1..80, the merge on 81..96, the preview on 97..99.
    const std::vector<int>& vnPositions = progress.Positions();
    for (const int nExpected : {80, 81, 96, 97, 99})
        EXPECT_LT(0, std::count(vnPositions.begin(), vnPositions.end(), nExpected)) << nExpected;
    EXPECT_EQ(99, vnPositions.back());
}

} // namespace LS::Tests
