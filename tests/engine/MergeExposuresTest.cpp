// The merge of a series: files in, float cache file and workspace out, and nothing half-filled.
#include "engine/CacheFolder.h"
#include "engine/ExposureMerge.h"
#include "tests/engine/SeriesFixture.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/ResourceLimit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

class MergeExposuresTest : public SeriesFixture {
protected:
    /// Pixels of all rows as MergeRow gives them.
    std::vector<float> ExpectedFloats() const
    {
        std::vector<float> vfExposures, vfWeights, vfFloats;
        ExposureList(series.vfShutters, series.vfStops, vfExposures);
        BuildWeightTable(vfWeights);
        OwnedCurves curves;
        LoadCurves(nullptr, curves.Get());
        std::vector<Bytes> vImages;
        for (std::size_t i = 0; i < series.vsFiles.size(); ++i)
            vImages.push_back(ReadBytes(File(i)));
        const auto nWidth = static_cast<std::size_t>(series.nWidth);
        for (std::size_t nAt = 0; nAt < vImages[0].size(); nAt += 4 * nWidth) {
            std::vector<const unsigned char*> vRows;
            vRows.reserve(vImages.size());
            for (const Bytes& image : vImages)
                vRows.push_back(&image[nAt]);
            const auto pfRow =
                MergeRow(vRows, series.nWidth, 3, vfExposures, curves.Get(), vfWeights, 8, 247);
            vfFloats.insert(vfFloats.end(), pfRow.get(), pfRow.get() + 3 * nWidth);
        }
        return vfFloats;
    }
};

} // namespace

TEST_F(MergeExposuresTest, FillsFileAndWorkspace)
{
    const FailureRecorder log;
    Photograph(6, 1001, 3); // every second row and column goes into the scaled-down copy
    ASSERT_TRUE(Merge());
    const HDRWorkspace& workspace = Workspace();
    EXPECT_EQ(6, workspace.nWidth);
    EXPECT_EQ(1001, workspace.nHeight);
    EXPECT_EQ(2, workspace.nScaledWidth);
    EXPECT_EQ(500, workspace.nScaledHeight);
    const std::vector<float> vfExpected = ExpectedFloats();
    WriteElements(folder.File("expected"), vfExpected);
    const std::string sFile = NarrowPath(workspace.sHDRFile);
    EXPECT_TRUE(ReadBytes(folder.File("expected")) == ReadBytes(sFile));
    for (std::size_t y = 0; y < 500; ++y)
        for (std::size_t x = 0; x < 2; ++x)
            ASSERT_TRUE(std::equal(&workspace.pfScaled[6 * y + 3 * x], &workspace.pfScaled[6 * y + 3 * x + 3],
                                   &vfExpected[36 * y + 9 * x]))
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
        {"missing source", [](const std::string& s) { fs::remove(s); }, "No such file", 4, false},
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

TEST(SaveHDRFile, ClearsTheCancelFlagAndRefusesWhatItCannotWrite)
{
    RequestCancel();
    const TempFolder folder;
    const FailureRecorder log;
    const std::string sIn = folder.File("in"), sOut = folder.File("out");
    EXPECT_FALSE(SaveHDRFile(sOut.c_str(), HDR_RADIANCE, nullptr)) << "no result";
    EXPECT_FALSE(Workspace().bCancel);

    WriteElements(sIn, std::vector<float>(3, 1));
    EXPECT_FALSE(WriteHDRData(nullptr, sOut.c_str(), 1, 1, 0, nullptr));
    EXPECT_FALSE(WriteHDRData(sIn.c_str(), sOut.c_str(), 0, 1, 0, nullptr));
    EXPECT_FALSE(WriteHDRData(sIn.c_str(), sOut.c_str(), 1, 1, 3, nullptr));
    EXPECT_FALSE(fs::exists(sOut));
}
