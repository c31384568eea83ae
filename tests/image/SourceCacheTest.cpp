// Source cache files, byte by byte, and the percentages of converting a series.
#include "image/SourceCache.h"

#include "tests/support/FailureRecorder.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <wx/image.h>

#include <sys/resource.h>

#include <csignal>
#include <filesystem>

using LS::Tests::Bytes;
using LS::Tests::FailureRecorder;
using LS::Tests::TempFolder;

namespace {

wxImage CountingPicture(int nWidth, int nHeight)
{
    wxImage image(nWidth, nHeight);
    for (int i = 0; i < 3 * nWidth * nHeight; ++i)
        image.GetData()[i] = static_cast<unsigned char>(10 + i);
    return image;
}

TEST(SourceCacheFile, Bytes)
{
    wxImage plain = CountingPicture(2, 2);
    wxImage alpha = CountingPicture(2, 2);
    alpha.InitAlpha();
    for (int i = 0; i < 4; ++i)
        alpha.GetAlpha()[i] = static_cast<unsigned char>(200 + i);
    wxImage masked = CountingPicture(2, 2);
    masked.SetMaskColour(10, 11, 12);

    const Bytes opaque = {0, 10, 11, 12, 0, 13, 14, 15, 0, 16, 17, 18, 0, 19, 20, 21};
    const struct {
        const char* szName;
        wxImage image;
        Bytes expected;
    } cases[] = {
        {"no alpha", plain, opaque},
        {"alpha", alpha, {200, 10, 11, 12, 201, 13, 14, 15, 202, 16, 17, 18, 203, 19, 20, 21}},
        {"a mask is no alpha", masked, opaque},
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
        EXPECT_EQ(c.expected, LS::Tests::ReadBytes(folder.File("a.tmp")));
        EXPECT_EQ(static_cast<std::size_t>(c.image.GetHeight()), vnRows.size());
        EXPECT_EQ(c.image.GetHeight() - 1, vnRows.back());
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

/// Lets no file of this process grow beyond some bytes, as a full disk would.
class FullDisk {
public:
    explicit FullDisk(rlim_t nBytes) : m_previousHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &m_previous);
        const rlimit limit{nBytes, m_previous.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_previousHandler);
    }

private:
    void (*m_previousHandler)(int);
    rlimit m_previous{};
};

TEST(SourceCacheFile, FailureLeavesNoFileAndOneLine)
{
    const struct {
        const char* szName;
        const char* szFile;
        wxSize size;
        rlim_t nDisk;
    } cases[] = {
        {"no such folder", "no/a.tmp", {4, 4}, RLIM_INFINITY},
        {"full while writing", "a.tmp", {300, 300}, 100'000},
        {"full at the close", "a.tmp", {10, 10}, 100},
        {"full from the start", "a.tmp", {10, 10}, 0},
    };
    const TempFolder folder;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        const FailureRecorder failures;
        bool bWritten = true;
        {
            const FullDisk disk(c.nDisk);
            bWritten = WriteSourceCacheFile(CountingPicture(c.size.x, c.size.y), folder.File(c.szFile), {});
        }
        EXPECT_FALSE(bWritten);
        EXPECT_TRUE(folder.Names().empty());
        ASSERT_EQ(1U, failures.Lines().size());
        EXPECT_EQ(0U, failures.Lines()[0].find("convert: " + folder.File(c.szFile) + ": "))
            << failures.Lines()[0];
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
    ASSERT_EQ(1U, failures.Lines().size());
    EXPECT_NE(std::string::npos, failures.Lines()[0].find("1000 bytes instead of 64")) << failures.Lines()[0];
}

TEST(ConversionPercent, OfAnImage)
{
    const struct {
        std::int32_t i, nCount, nSkipped, nDecoded;
    } cases[] = {
        {0, 1, 100, 5}, {0, 3, 33, 5},   {1, 3, 66, 38},     {2, 3, 100, 71},
        {0, 7, 14, 5},  {6, 7, 100, 90}, {29, 30, 100, 101},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.i << " of " << c.nCount);
        EXPECT_EQ(c.nSkipped, ConversionPercent::Skipped(c.i, c.nCount));
        EXPECT_EQ(c.nDecoded, ConversionPercent::Decoded(c.i, c.nCount));
    }
}

TEST(ConversionPercent, OfARow)
{
    const struct {
        const char* szName;
        std::int32_t i, nCount, y, nHeight, nExpected;
    } cases[] = {
        {"start of one image: 5.5 + 0.5 * 95 / 100", 0, 1, 0, 1000, 5},
        {"a row within the first percent is none", 0, 1, 9, 1000, 5},
        {"5.5 + 1.5 * 0.95 = 6.925", 0, 1, 10, 1000, 6},
        {"5.5 + 2.5 * 0.95 = 7.875", 0, 1, 29, 1000, 7},
        {"last row: 5.5 + 99.5 * 0.95 = 100.025", 0, 1, 999, 1000, 100},
        {"two rows: 5.5 + 50.5 * 0.95 = 53.475", 0, 1, 1, 2, 53},
        {"second of four: 25 + 5.5 + 50.5 * 0.2 = 40.6", 1, 4, 500, 1000, 40},
        {"last of three: 66.67 + 5.5 + 99.5 * 0.2833 = 100.36", 2, 3, 999, 1000, 100},
        {"a share of five: 20 + 5.5 + 99.5 * 0.15 = 40.425", 1, 5, 99, 100, 40},
        {"a share of 2.5 goes down: 5.5 - 99.5 * 0.025 = 3.0125", 0, 40, 99, 100, 3},
        {"more rows than 32 bits of percents: 5.5 + 75.5 * 0.95 = 77.225", 0, 1, 75'000'000, 99'000'000, 77},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        EXPECT_EQ(c.nExpected, ConversionPercent::Row(c.i, c.nCount, c.y, c.nHeight));
    }
}

} // namespace
