// A cancel at every position of every operation: nothing half-done stays, and it counts as no failure.
#include "tests/engine/SeriesFixture.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/InstructionSets.h"
#include "tests/support/RecordingProgress.h"
#include "tests/support/TestProcess.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

namespace LS::Tests {

namespace {

/// Does something once with each position at which a whole run reports, and the last of them.
void AtEveryPosition(const std::function<bool(ProgbarSetter*)>& run,
                     const std::function<void(int nPosition, bool bDone)>& look)
{
    RecordingProgress whole;
    ProgbarSetter wholeSetter = whole.Setter();
    ASSERT_TRUE(run(&wholeSetter));
    ASSERT_LT(5U, whole.Positions().size());
    const FailureRecorder failures;
    for (const int nPosition : whole.Positions()) {
        SCOPED_TRACE(nPosition);
        RecordingProgress progress(nPosition);
        ProgbarSetter setter = progress.Setter();
        const std::size_t nOpen = OpenDescriptors();
        look(nPosition, run(&setter));
        EXPECT_EQ(nOpen, OpenDescriptors());
    }
    EXPECT_TRUE(failures.Lines().empty());
}

using Cancel = SeriesFixture;

} // namespace

TEST_F(Cancel, OfAMerge)
{
    Photograph(12, 120, 2);
    AtEveryPosition([this](ProgbarSetter* p) { return Merge(p); },
                    [](int nPosition, bool bDone) {
                        EXPECT_EQ(nPosition >= 99, bDone) << "99 comes after the last row";
                        if (!bDone)
                            ExpectEmptyWorkspace();
                    });
}

TEST_F(Cancel, OfARecovery)
{
    Photograph(40, 30, 19, 1.4); // so many that the slow solving has few positions
    OwnedCurves curves;
    const auto recover = [&](ProgbarSetter* pProgress) {
        for (const float* pCurve : curves.Get())
            delete[] pCurve;
        curves.Release();
        ResetWorkspace();
        return Recover(curves, pProgress);
    };
    AtEveryPosition(recover, [&](int nPosition, bool bDone) {
        EXPECT_EQ(nPosition == 100, bDone) << "then the curves are there and are handed out";
        EXPECT_EQ(bDone, !curves.Get().empty());
        if (nPosition < 38) // while files are read
            ExpectEmptyWorkspace();
    });
}

TEST_F(Cancel, OfANewImage)
{
    Photograph(12, 7, 2);
    OwnedCurves curves;
    const auto create = [&](ProgbarSetter* pProgress) {
        if (curves.Get().empty())
            LoadCurves(nullptr, curves.Get());
        return !Create(curves, pProgress).empty();
    };
    AtEveryPosition(create, [&](int nPosition, bool bDone) {
        EXPECT_FALSE(bDone);
        EXPECT_EQ(-14, nOutWidth + nOutHeight);
        // From its last row on the merge succeeds and takes the curves: they went with the workspace.
        EXPECT_EQ(nPosition < 68 ? 3U : 0U, curves.Get().size());
        ExpectEmptyWorkspace();
    });
}

TEST_F(Cancel, OfAMappingLeavesTheMergedImage)
{
    const struct {
        std::int32_t nWidth; // above 1500 the mapping goes by rows
        Util::InstructionSet limit;
    } cases[] = {{1500, Util::InstructionSet::Best},
                 {1501, Util::InstructionSet::Best},
                 {1500, Util::InstructionSet::Plain}};
    for (const auto& c : cases) {
        const InstructionLimit limited(c.limit);
        Photograph(c.nWidth, 9, 2);
        ASSERT_TRUE(Merge(nullptr));
        const auto map = [&](ProgbarSetter* pProgress) { return !MapFull(pProgress).empty(); };
        AtEveryPosition(map, [&](int nPosition, bool bDone) {
            EXPECT_EQ(nPosition == 100, bDone) << "then the picture is there and is handed out";
            EXPECT_FALSE(Workspace().bCancel);
            EXPECT_EQ(c.nWidth, Workspace().nWidth);
            EXPECT_TRUE(std::filesystem::exists(Util::NarrowPath(Workspace().sHDRFile)));
        });
    }
}

} // namespace LS::Tests
