// Source cache files, byte by byte, and the percentages of converting a series.
#include "image/SourceCache.h"

#include "tests/support/FailureRecorder.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wx/image.h>

#include <filesystem>
#include <numeric>

using namespace LS::Tests;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

wxImage CountingPicture(int nWidth, int nHeight)
{
    wxImage image(nWidth, nHeight);
    std::iota(image.GetData(), image.GetData() + std::ptrdiff_t{3} * nWidth * nHeight, 10);
    return image;
}

TEST(SourceCacheFile, Bytes)
{
    wxImage alpha = CountingPicture(2, 2);
    alpha.InitAlpha();
    std::iota(alpha.GetAlpha(), alpha.GetAlpha() + 4, 200);
    const struct {
        const char* szName;
        wxImage image;
        Bytes expected;
    } cases[] = {
        {"alpha", alpha, {200, 10, 11, 12, 201, 13, 14, 15, 202, 16, 17, 18, 203, 19, 20, 21}},
        {"one pixel over an older, longer file", CountingPicture(1, 1), {0, 10, 11, 12}},
    };
    const TempFolder folder;
    const FailureRecorder failures;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        std::vector<std::int32_t> vnRows;
        EXPECT_TRUE(WriteSourceCacheFile(c.image, folder.File("a.tmp"), [&vnRows](std::int32_t y) {
            vnRows.push_back(y);
            return true;
        }));
        EXPECT_EQ(c.expected, ReadBytes(folder.File("a.tmp")));
        EXPECT_EQ(c.image.GetHeight() == 1 ? std::vector{0} : (std::vector{0, 1}), vnRows);
    }
    EXPECT_TRUE(failures.Lines().empty());
}

TEST(SourceCacheFile, StoppedByItsCaller)
{
    const TempFolder folder;
    const FailureRecorder failures;
    int nCalls = 0;
    EXPECT_FALSE(WriteSourceCacheFile(CountingPicture(4, 8), folder.File("a.tmp"), [&nCalls](std::int32_t y) {
        ++nCalls;
        return y < 2;
    }));
    EXPECT_EQ(3, nCalls);
    EXPECT_TRUE(folder.Names().empty());
    EXPECT_TRUE(failures.Lines().empty()) << "a wish is no failure";
}

TEST(SourceCacheFile, FailureLeavesNoFileAndOneLine)
{
    const TempFolder folder;
    for (const auto& [nWidth, nDisk] : {std::pair{300, 100'000U}, {10, 100U}}) { // the second at the close
        const FailureRecorder failures;
        const ResourceLimit disk(RLIMIT_FSIZE, nDisk);
        EXPECT_FALSE(WriteSourceCacheFile(CountingPicture(nWidth, nWidth), folder.File("a.tmp"), {}));
        EXPECT_TRUE(folder.Names().empty());
        EXPECT_THAT(failures.Lines(), ElementsAre(StartsWith("convert: " + folder.File("a.tmp") + ": ")));
    }
}

TEST(SourceCacheFile, SizeIsLookedAtAfterTheClose)
{
    const TempFolder folder;
    const FailureRecorder failures;
    // Everything is still in the stream's buffer when the file is made longer than it.
    EXPECT_FALSE(WriteSourceCacheFile(CountingPicture(4, 4), folder.File("a.tmp"), [&folder](std::int32_t) {
        std::filesystem::resize_file(folder.File("a.tmp"), 1000);
        return true;
    }));
    EXPECT_TRUE(folder.Names().empty());
    EXPECT_THAT(failures.Lines(), ElementsAre(HasSubstr("1000 bytes instead of 64")));
}

TEST(ConversionPercent, OfImagesAndRows)
{
    EXPECT_EQ(66, ConversionPercent::Skipped(1, 3));
    EXPECT_EQ(38, ConversionPercent::Decoded(1, 3));
    const struct {
        std::int32_t i, nCount, y, nHeight, nExpected;
    } cases[] = {
        {0, 1, 999, 1000, 100},             // the last row: 5.5 + 99.5 * 0.95 = 100.025
        {1, 4, 500, 1000, 40},              // the second of four: 25 + 5.5 + 50.5 * 0.2 = 40.6
        {0, 40, 99, 100, 3},                // a share of 2.5 goes down: 5.5 - 99.5 * 0.025 = 3.0125
        {0, 1, 75'000'000, 99'000'000, 77}, // more percents than 32 bits hold
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.nExpected, ConversionPercent::Row(c.i, c.nCount, c.y, c.nHeight)) << c.nExpected;
}

} // namespace
