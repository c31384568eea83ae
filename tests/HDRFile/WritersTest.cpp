// What holds for all three writers: progress, and a clear failure whatever goes wrong.
#include "HDRFile/FloatTiff.h"
#include "HDRFile/OpenExr.h"
#include "HDRFile/Radiance.h"
#include "tests/HDRFile/CachePicture.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/RecordingProgress.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TestProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace LS::Tests {

namespace {

using Writer = bool (*)(const char*, const char*, std::int32_t, std::int32_t, ProgbarSetter*);

struct Format {
    const char* szName;
    Writer write;
};

class Writers : public testing::TestWithParam<Format> {
protected:
    static bool Write(const CachePicture& cache, const std::string& sFile, ProgbarSetter* pProgress = nullptr)
    {
        return GetParam().write(cache.sPath.c_str(), sFile.c_str(), cache.nWidth, cache.nHeight, pProgress);
    }
};

INSTANTIATE_TEST_SUITE_P(, Writers,
                         testing::Values(Format{"OpenExr", WriteOpenExrFile},
                                         Format{"Radiance", WriteRadianceFile},
                                         Format{"FloatTiff", WriteFloatTiffFile}),
                         [](const auto& format) { return std::string(format.param.szName); });

/// Saves pictures of the given heights and prints what each reports, all in one line.
void PrintReports(Writer write, std::initializer_list<std::int32_t> heights)
{
    for (const std::int32_t nHeight : heights) {
        const CachePicture cache(2, nHeight);
        RecordingProgress progress;
        progress.Setter();                           // forgets the last position
        ProgbarSetter setter(&progress, -1, 0, 100); // shows a 0 too
        write(cache.sPath.c_str(), cache.File("picture").c_str(), 2, nHeight, &setter);
        for (const int nPosition : progress.Positions())
            std::fprintf(stderr, "%d ", nPosition);
        std::fprintf(stderr, "; ");
    }
}

} // namespace

TEST_P(Writers, ReportEachPercentageOnce)
{
    // In a process of its own, since the last report outlives a save: the second picture of one row and the
    // one of three rows start with the 0 that the save before ended with, and so leave it out.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            PrintReports(GetParam().write, {1, 1, 3, 4});
            std::_Exit(0);
        },
        testing::ExitedWithCode(0), "^0 100 ; 100 ; 33 66 100 ; 0 25 50 75 100 ; $");
}

TEST_P(Writers, FailClearly)
{
    const CachePicture cache(20, 70);
    const std::string sShort = cache.File("short.tmp");
    const std::string sPipe = cache.File("pipe");
    const std::string sPicture = cache.File("picture");
    WriteBytes(sShort, cache.vfStored.data(), 20 * 12 * 50 + 20 * 12 - 1);
    ASSERT_EQ(0, mkfifo(sPipe.c_str(), 0600));
    const char* const szSource = cache.sPath.c_str();
    const char* const szPicture = sPicture.c_str();

    const struct {
        const char *szName, *szSource, *szPicture;
        std::string sLine;
    } cases[] = {
        {"no source", nullptr, szPicture, "save: " + sPicture + ": there is no picture to write"},
        {"short source", sShort.c_str(), szPicture, "save: " + sShort + ": the file is too short"},
        {"picture is a folder", szSource, cache.folder.Path().c_str(),
         "save: " + cache.folder.Path() + ": Is a directory"},
        {"picture is a pipe", szSource, sPipe.c_str(), "save: " + sPipe + ": "},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        const std::size_t nDescriptors = OpenDescriptors();
        const FailureRecorder failures;
        RecordingProgress progress;
        ProgbarSetter setter = progress.Setter();
        EXPECT_FALSE(GetParam().write(c.szSource, c.szPicture, 20, 70, &setter));
        EXPECT_THAT(failures.Lines(), testing::ElementsAre(testing::StartsWith(c.sLine)));
        EXPECT_FALSE(std::ranges::count(progress.Positions(), 100));
        EXPECT_EQ(nDescriptors, OpenDescriptors());
    }
}

TEST_P(Writers, NoticeAFullDisk)
{
    const CachePicture cache(20, 70);
    const std::string sPicture = cache.File("picture");
    ASSERT_TRUE(Write(cache, sPicture));
    const rlim_t nSize = std::filesystem::file_size(sPicture);
    for (const rlim_t nLimit : {rlim_t{100}, nSize / 2, nSize - 1}) {
        SCOPED_TRACE(nLimit);
        const FailureRecorder failures;
        const ResourceLimit full(RLIMIT_FSIZE, nLimit);
        EXPECT_FALSE(Write(cache, sPicture));
        EXPECT_THAT(failures.Lines(), testing::ElementsAre(testing::HasSubstr("File too large")));
    }
}

} // namespace LS::Tests
