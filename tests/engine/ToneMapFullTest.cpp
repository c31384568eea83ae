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

/// The workspace as a merge leaves it.
class MergedWorkspace {
public:
    explicit MergedWorkspace(const Picture& picture)
    {
        CreateCacheFolder();
        HDRWorkspace& workspace = Workspace();
        workspace.sHDRFile = CacheFolder() + L"float.tmp";
        WriteElements(Util::NarrowPath(workspace.sHDRFile), picture.vfPixels);
        workspace.nWidth = picture.nWidth;
        workspace.nHeight = picture.nHeight;
        // Half the picture serves as the copy for the preview.
        workspace.nScaledWidth = picture.nWidth;
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
    } cases[] = {{1500, 2, false, Util::InstructionSet::Avx2},  {1501, 2, true, Util::InstructionSet::Avx2},
                 {2, 1500, false, Util::InstructionSet::Avx2},  {2, 1501, true, Util::InstructionSet::Avx2},
                 {1500, 2, false, Util::InstructionSet::Plain}, {1501, 2, true, Util::InstructionSet::Plain}};
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
        EXPECT_TRUE(std::is_sorted(progress.Positions().begin(), progress.Positions().end()));
        EXPECT_EQ(100, progress.Positions().back());
    }
}

TEST(ToneMapFull, WithoutProgressInMemoryWhateverTheSize)
{
    const Picture picture = RandomPicture(1501, 3);
    const MergedWorkspace merged(picture);
    WriteText(CacheFile(L"xydata.tmp"), "stays");
    EXPECT_EQ(MapScaledImage(picture, 0, 2.2F), MapFull(picture, nullptr));
    EXPECT_TRUE(std::filesystem::exists(CacheFile(L"xydata.tmp")));
}

TEST(ToneMapFull, CancelAtEveryPosition)
{
    const struct {
        std::int32_t nWidth;
        Util::InstructionSet limit;
    } cases[] = {{1500, Util::InstructionSet::Avx2},
                 {1501, Util::InstructionSet::Avx2},
                 {1500, Util::InstructionSet::Plain}};
    for (const auto& [nWidth, limit] : cases) {
        const InstructionLimit limited(limit);
        const Picture picture = SmoothPicture(nWidth, 9);
        const MergedWorkspace merged(picture);
        const FailureRecorder failures;
        const Bytes expected = MapScaledImage(picture, 0, 2.2F);
        RecordingProgress whole;
        ProgbarSetter wholeSetter = whole.Setter();
        ASSERT_EQ(expected, MapFull(picture, &wholeSetter));
        for (const int nPosition : whole.Positions()) {
            SCOPED_TRACE(testing::Message() << "width " << nWidth << ", position " << nPosition);
            RecordingProgress progress(nPosition);
            ProgbarSetter setter = progress.Setter();
            // At 100 the last poll is over: the picture is there and is handed out.
            EXPECT_EQ(nPosition == 100 ? expected : Bytes(), MapFull(picture, &setter));
            EXPECT_EQ(nWidth, Workspace().nWidth);
            EXPECT_TRUE(std::filesystem::exists(Util::NarrowPath(Workspace().sHDRFile)));
        }
        EXPECT_EQ(expected, MapFull(picture, nullptr));
        EXPECT_TRUE(failures.Lines().empty()); // a cancel is no failure
    }
}

TEST(ToneMapFull, FailuresGiveNullAndOneLine)
{
    const auto removeFloats = [] { std::filesystem::remove(CacheFile(L"float.tmp")); };
    const auto cutFloats = [] {
        const std::string sPath = CacheFile(L"float.tmp");
        std::filesystem::resize_file(sPath, std::filesystem::file_size(sPath) - 1);
    };
    const auto blockChroma = [] { std::filesystem::create_directory(CacheFile(L"xydata.tmp")); };
    const auto nothing = [] {};
    const struct {
        const char* name;
        const char* szLine;
        void (*spoil)();
        std::int32_t nWidth;
        bool bFullDisk;
    } cases[] = {
        {"no file, in memory", "float.tmp: No such file or directory", removeFloats, 20, false},
        {"no file, by rows", "float.tmp: No such file or directory", removeFloats, 1501, false},
        {"short file, in memory", "float.tmp: the file is too short", cutFloats, 20, false},
        {"short file, by rows", "float.tmp: the file is too short", cutFloats, 1501, false},
        {"no place for the chromaticities", "xydata.tmp: not a regular file", blockChroma, 1501, false},
        {"full disk", "xydata.tmp: File too large", nothing, 1501, true},
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
        if (c.bFullDisk)
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

TEST(ToneMapScaled, NullWithoutAMergedImage)
{
    ResetWorkspace();
    const FailureRecorder failures;
    std::int32_t nWidth = -7, nHeight = -7;
    EXPECT_EQ(nullptr, ToneMapScaled(0, 2.2F, &nWidth, &nHeight));
    EXPECT_EQ(nullptr, ToneMapFull(0, 2.2F, &nWidth, &nHeight, nullptr));
    EXPECT_EQ(-7, nWidth);
    EXPECT_EQ(-7, nHeight);
    EXPECT_EQ(2u, failures.Lines().size());
}

} // namespace

} // namespace LS::Tests
