// The merge of a series: files in, float cache file and workspace out, and nothing half-filled.
#include "engine/CacheFolder.h"
#include "engine/ExposureMerge.h"
#include "tests/engine/SeriesFixture.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/ResourceLimit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <optional>
#include <sys/stat.h>

using namespace LS::Tests;
using LS::Util::NarrowPath;
namespace fs = std::filesystem;

namespace {

/// The cache folder, without a separator at its end.
std::string CachePath()
{
    return NarrowPath(CacheFolder().substr(0, CacheFolder().size() - 1));
}

using MergeExposuresTest = SeriesFixture;

} // namespace

TEST_F(MergeExposuresTest, FillsFileAndWorkspace)
{
    const FailureRecorder log;
    Photograph(6, 1001, 3); // every second row and column goes into the scaled-down copy
    const Bytes shown = ReadBytes(File(1)), dark(shown.size());
    WriteElements(File(0), dark); // so only the readings of the second image count
    WriteElements(File(2), dark);
    ASSERT_TRUE(Merge());
    const HDRWorkspace& workspace = Workspace();
    EXPECT_EQ(6, workspace.nWidth);
    EXPECT_EQ(1001, workspace.nHeight);
    EXPECT_EQ(2, workspace.nScaledWidth);
    EXPECT_EQ(500, workspace.nScaledHeight);
    const std::string sFile = NarrowPath(workspace.sHDRFile);
    const Bytes file = ReadBytes(sFile);
    std::vector<float> vfMerged(std::size_t{3} * 6 * 1001), vfExposures;
    ASSERT_EQ(vfMerged.size() * sizeof(float), file.size());
    std::memcpy(vfMerged.data(), file.data(), file.size());
    ExposureList(series.vfShutters, series.vfStops, vfExposures);
    for (std::size_t n = 0; n < vfMerged.size(); ++n) {
        const unsigned char z = shown[n / 3 * 4 + n % 3 + 1];
        if (z >= 8 && z <= 247) {
            EXPECT_FLOAT_EQ(workspace.vafCurves[n % 3][z] / vfExposures[1], vfMerged[n]) << n;
        }
    }
    for (std::size_t y = 0; y < 500; ++y)
        for (std::size_t x = 0; x < 2; ++x)
            ASSERT_TRUE(std::equal(&workspace.pfScaled[6 * y + 3 * x], &workspace.pfScaled[6 * y + 3 * x + 3],
                                   &vfMerged[36 * y + 9 * x]))
                << x << ", " << y;
    EXPECT_EQ(fs::perms(0600), fs::status(sFile).permissions()) << "the sources may be closed to others";
    EXPECT_TRUE(log.Lines().empty());

    ResetWorkspace();
    EXPECT_FALSE(fs::exists(sFile));
    EXPECT_TRUE(fs::exists(File(0))) << "source cache files stay for the next merge";
}

TEST_F(MergeExposuresTest, FailuresLeaveNothingButALogLine)
{
    const struct {
        const char* name;
        void (*spoil)(const std::string& sSource);
        const char* reason;
        std::int32_t width;
        bool leavesFile; // of floats, for the next start to remove
    } cases[] = {
        {"source cut in its last row", [](const std::string& s) { fs::resize_file(s, fs::file_size(s) - 1); },
         "too short", 4, true},
        {"pipe as source",
         [](const std::string& s) {
             fs::remove(s);
             ASSERT_EQ(0, mkfifo(s.c_str(), 0600));
         },
         "not a regular file", 4, false},
        {"full disk", nullptr, "File too large", 4, false},
        {"no cache folder",
         [](const std::string&) {
             fs::remove_all(CacheFolder());
             WriteText(CachePath(), "in the way");
         },
         "Not a directory", 4, false},
        {"too narrow", nullptr, "too narrow", 1, false},
        {"no size", nullptr, "unknown", 0, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EmptyCacheFolder();
        Photograph(4, 1500, 2);
        series.nWidth = c.width;
        if (c.spoil)
            c.spoil(File(1));
        const FailureRecorder log;
        {
            std::optional<ResourceLimit> full;
            if (c.name == std::string("full disk"))
                full.emplace(RLIMIT_FSIZE, rlim_t{4} * 1500 * 12 - 1);
            EXPECT_FALSE(Merge());
        }
        ExpectEmptyWorkspace();
        EXPECT_EQ(!c.leavesFile, !fs::exists(CacheFolder()) || fs::is_empty(CacheFolder()));
        EXPECT_THAT(log.Lines(), testing::ElementsAre(testing::HasSubstr(c.reason)));
        fs::remove(File(1));
        if (fs::is_regular_file(CachePath()))
            fs::remove(CachePath());
    }
    EmptyCacheFolder();
}

TEST(SaveHDRFile, ClearsTheCancelFlagAndFailsWithoutAResult)
{
    RequestCancel();
    const TempFolder folder;
    EXPECT_FALSE(SaveHDRFile(folder.File("out").c_str(), HDR_RADIANCE, nullptr));
    EXPECT_FALSE(Workspace().bCancel);
}
