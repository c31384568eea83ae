// The operations on a merged workspace: which road, progress, cancel, failures.
#include "engine/HDRRoutine.h"

#include "Util/Paths.h"
#include "Util/PixelBuffer.h"
#include "engine/CacheFolder.h"
#include "engine/HDRWorkspace.h"
#include "tests/engine/TonePictures.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/InstructionSets.h"
#include "tests/support/RecordingProgress.h"
#include "tests/support/ResourceLimit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>

namespace LS::Tests {

namespace {

using Util::PixelBuffer;

std::string CacheFile(const wchar_t* szName)
{
    return Util::NarrowPath(CacheFolder() + szName);
}

/// The workspace as a merge leaves it; half the picture serves as the copy for the preview.
class MergedWorkspace {
public:
    explicit MergedWorkspace(const Picture& picture)
    {
        CreateCacheFolder();
        HDRWorkspace& workspace = Workspace();
        workspace.sHDRFile = CacheFolder() + L"float.tmp";
        WriteElements(Util::NarrowPath(workspace.sHDRFile), picture.vfPixels);
        workspace.nWidth = workspace.nScaledWidth = picture.nWidth;
        workspace.nHeight = picture.nHeight;
        workspace.nScaledHeight = picture.nHeight / 2;
        const std::size_t nFloats = picture.vfPixels.size() / 2;
        workspace.pfScaled = std::make_unique<float[]>(nFloats);
        std::copy_n(picture.vfPixels.begin(), nFloats, workspace.pfScaled.get());
    }
    MergedWorkspace(const MergedWorkspace&) = delete;
    MergedWorkspace& operator=(const MergedWorkspace&) = delete;
    ~MergedWorkspace()
    {
        ResetWorkspace();
        std::filesystem::remove_all(CacheFile(L"xydata.tmp"));
    }
};

/// The full-size result, its size checked; empty for null.
Bytes MapFull(const Picture& picture, ProgbarSetter* pProgress)
{
    std::int32_t nWidth = -7, nHeight = -7;
    const PixelBuffer pPixels(ToneMapFull(0, 2.2F, &nWidth, &nHeight, pProgress));
    EXPECT_EQ(pPixels ? picture.nWidth : -7, nWidth);
    EXPECT_EQ(pPixels ? picture.nHeight : -7, nHeight);
    EXPECT_FALSE(Workspace().bCancel);
    return pPixels ? Bytes(pPixels.get(), pPixels.get() + picture.vfPixels.size()) : Bytes();
}

TEST(ToneMapFull, RoadAndPositionsBySize)
{
    const std::vector<int> vnInMemory{5, 16, 61, 74, 88, 97, 100};
    const std::vector<int> vnByRows{2, 11, 21, 22, 31, 32, 66, 100};
    const struct {
        std::int32_t nWidth, nHeight;
        bool bByRows;
        Util::InstructionSet limit;
    } cases[] = {{1500, 2, false, Util::InstructionSet::Best},
                 {1501, 2, true, Util::InstructionSet::Best},
                 {2, 1501, true, Util::InstructionSet::Best},
                 {1500, 2, false, Util::InstructionSet::Plain}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.nWidth << " x " << c.nHeight);
        const InstructionLimit limit(c.limit);
        const Picture picture = RandomPicture(c.nWidth, c.nHeight);
        const MergedWorkspace merged(picture);
        WriteText(CacheFile(L"xydata.tmp"), "deleted by the row road only");
        RecordingProgress progress;
        ProgbarSetter setter = progress.Setter();
        EXPECT_EQ(MapScaledImage(picture, 0, 2.2F), MapFull(picture, &setter));
        EXPECT_EQ(c.bByRows, !std::filesystem::exists(CacheFile(L"xydata.tmp")));
        if (c.nHeight == 2) {
            EXPECT_EQ(c.bByRows ? vnByRows : vnInMemory, progress.Positions());
        }
        // Without a progress it works in memory, whatever the size.
        WriteText(CacheFile(L"xydata.tmp"), "stays");
        EXPECT_EQ(MapScaledImage(picture, 0, 2.2F), MapFull(picture, nullptr));
        EXPECT_TRUE(std::filesystem::exists(CacheFile(L"xydata.tmp")));
    }
}

TEST(ToneMapFull, FailuresGiveNullAndOneLine)
{
    const struct {
        const char* name;
        std::int32_t nWidth;
        void (*spoil)();
        const char* szLine;
    } cases[] = {
        {"short file, in memory", 20, [] { std::filesystem::resize_file(CacheFile(L"float.tmp"), 99); },
         "float.tmp: the file is too short"},
        {"no file, by rows", 1501, [] { std::filesystem::remove(CacheFile(L"float.tmp")); },
         "float.tmp: No such file or directory"},
        {"no place for the chromaticities", 1501,
         [] { std::filesystem::create_directory(CacheFile(L"xydata.tmp")); }, "xydata.tmp: Is a directory"},
        {"full disk", 1501, [] {}, "xydata.tmp: File too large"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Picture picture = SmoothPicture(c.nWidth, 4);
        const MergedWorkspace merged(picture);
        c.spoil();
        const FailureRecorder failures;
        RecordingProgress progress;
        ProgbarSetter setter = progress.Setter();
        std::optional<ResourceLimit> disk;
        if (c.name == std::string("full disk"))
            disk.emplace(RLIMIT_FSIZE, 3 * 8 * 1501); // one row less than needed
        EXPECT_EQ(Bytes(), MapFull(picture, &setter));
        EXPECT_THAT(failures.Lines(), testing::ElementsAre(testing::AllOf(testing::StartsWith("tone map: "),
                                                                          testing::EndsWith(c.szLine))));
        EXPECT_EQ(c.nWidth, Workspace().nWidth);
    }
}

TEST(ToneMapScaled, MapsTheCopyAndForgetsAnOldCancel)
{
    Picture picture = RandomPicture(30, 20);
    const MergedWorkspace merged(picture);
    std::filesystem::remove(CacheFile(L"float.tmp")); // plays no part
    RequestCancel();
    std::int32_t nWidth = 0, nHeight = 0;
    const PixelBuffer pPixels(ToneMapScaled(-1.5F, 1.9F, &nWidth, &nHeight));
    ASSERT_TRUE(pPixels);
    EXPECT_EQ(30, nWidth);
    EXPECT_EQ(10, nHeight);
    EXPECT_FALSE(Workspace().bCancel);
    picture.nHeight = 10;
    picture.vfPixels.resize(picture.vfPixels.size() / 2);
    EXPECT_EQ(MapScaledImage(picture, -1.5F, 1.9F),
              Bytes(pPixels.get(), pPixels.get() + picture.vfPixels.size()));
}

} // namespace

} // namespace LS::Tests
