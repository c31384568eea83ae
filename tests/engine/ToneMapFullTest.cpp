// The operations on a merged workspace: which path, its progress, its failures.
#include "engine/CacheFolder.h"
#include "tests/engine/SeriesFixture.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/RecordingProgress.h"
#include "tests/support/ResourceLimit.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <optional>

namespace LS::Tests {

namespace {

namespace fs = std::filesystem;
using ToneMapFull = SeriesFixture;

std::string ChromaticityFile()
{
    return Util::NarrowPath(CacheFolder() + L"xydata.tmp");
}

TEST_F(ToneMapFull, RoadAndPositionsBySize)
{
    const std::vector<int> vnInMemory{5, 16, 61, 74, 88, 97, 100};
    const std::vector<int> vnByRows{2, 11, 21, 22, 31, 32, 66, 100};
    for (const auto& [nWidth, nHeight] : {std::pair{1500, 2}, {1501, 2}, {4, 1500}, {4, 1501}}) {
        SCOPED_TRACE(testing::Message() << nWidth << " x " << nHeight);
        Photograph(nWidth, nHeight, 2);
        ASSERT_TRUE(Merge());
        WriteText(ChromaticityFile(), "deleted by the path by rows only");
        const Bytes picture = MapFull(nullptr); // in memory, whatever the size
        EXPECT_EQ(nWidth, nOutWidth);
        EXPECT_EQ(nHeight, nOutHeight);
        EXPECT_TRUE(fs::exists(ChromaticityFile()));

        RecordingProgress progress;
        ProgbarSetter setter = progress.Setter();
        EXPECT_EQ(picture, MapFull(&setter));
        const bool bByRows = nWidth > 1500 || nHeight > 1500;
        EXPECT_EQ(bByRows, !fs::exists(ChromaticityFile()));
        if (nHeight == 2) {
            EXPECT_EQ(bByRows ? vnByRows : vnInMemory, progress.Positions());
        }
    }
}

TEST_F(ToneMapFull, FailuresGiveNullAndOneLine)
{
    const struct {
        const char* name;
        std::int32_t nWidth;
        void (*spoil)(const std::string& sFloats);
        const char* szLine;
    } cases[] = {
        {"short file, in memory", 20, [](const std::string& s) { fs::resize_file(s, 99); },
         ".tmp: the file is too short"},
        {"no file, by rows", 1501, [](const std::string& s) { fs::remove(s); },
         ".tmp: No such file or directory"},
        {"no place for the chromaticities", 1501,
         [](const std::string&) { fs::create_directory(ChromaticityFile()); }, "xydata.tmp: Is a directory"},
        {"full disk", 1501, [](const std::string&) {}, "xydata.tmp: File too large"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Photograph(c.nWidth, 4, 2);
        ASSERT_TRUE(Merge());
        c.spoil(Util::NarrowPath(Workspace().sHDRFile));
        const FailureRecorder failures;
        RecordingProgress progress;
        ProgbarSetter setter = progress.Setter();
        std::optional<ResourceLimit> disk;
        if (c.name == std::string("full disk"))
            disk.emplace(RLIMIT_FSIZE, 3 * 8 * 1501); // one row less than needed
        EXPECT_EQ(Bytes(), MapFull(&setter));
        EXPECT_EQ(-14, nOutWidth + nOutHeight);
        EXPECT_THAT(failures.Lines(), testing::ElementsAre(testing::AllOf(testing::StartsWith("tone map: "),
                                                                          testing::EndsWith(c.szLine))));
        EXPECT_EQ(c.nWidth, Workspace().nWidth);
        fs::remove_all(ChromaticityFile());
    }
}

} // namespace

} // namespace LS::Tests
