// 8-bit TIFF files, read back by libtiff.
#include "image/tiff.h"

#include "tests/image/RawPicture.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/ResourceLimit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tiffio.h>

#include <climits>
#include <filesystem>
#include <memory>
#include <optional>

#include <sys/stat.h>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

struct TiffCloser {
    void operator()(TIFF* pTiff) const { TIFFClose(pTiff); }
};
using TiffFile = std::unique_ptr<TIFF, TiffCloser>;

TiffFile OpenTiff(const std::string& sPath)
{
    TIFFSetWarningHandler(nullptr); // of four samples without a word on the fourth
    return TiffFile(TIFFOpen(sPath.c_str(), "r"));
}

template <typename Value> std::optional<Value> Tag(const TiffFile& file, std::uint32_t nTag)
{
    Value value{};
    if (TIFFGetField(file.get(), nTag, &value) != 1)
        return {};
    return value;
}

Bytes Pixels(const TiffFile& file)
{
    Bytes pixels;
    Bytes row(static_cast<std::size_t>(TIFFScanlineSize(file.get())));
    const std::uint32_t nHeight = Tag<std::uint32_t>(file, TIFFTAG_IMAGELENGTH).value();
    for (std::uint32_t y = 0; y < nHeight; ++y) {
        EXPECT_EQ(1, TIFFReadScanline(file.get(), row.data(), y));
        pixels.insert(pixels.end(), row.begin(), row.end());
    }
    return pixels;
}

/// 5 x 3 pixels A R G B with a run, a ramp and A = 255.
Bytes Argb()
{
    Bytes pixels;
    for (int i = 0; i < 15; ++i) {
        const auto nRamp = static_cast<unsigned char>(i < 7 ? 9 : 17 * i);
        pixels.insert(pixels.end(), {255, nRamp, static_cast<unsigned char>(255 - nRamp), 128});
    }
    return pixels;
}

Bytes Rgba(const Bytes& argb)
{
    Bytes rgba;
    for (std::size_t i = 0; i < argb.size(); i += 4)
        rgba.insert(rgba.end(), {argb[i + 1], argb[i + 2], argb[i + 3], argb[i]});
    return rgba;
}

/// Calls the writer and returns its result and what it put on the error stream.
struct Written {
    int nResult;
    std::string sErrorStream;
};

Written Write(RawImage& raw, const std::string& sPath, unsigned nCompression = 2)
{
    testing::internal::CaptureStderr();
    const int nResult = WriteLdrTiff(raw, sPath.c_str(), nCompression, false);
    return {nResult, testing::internal::GetCapturedStderr()};
}

} // namespace

TEST(WriteLdrTiff, TagsAndPixelsOfEachCompression)
{
    const struct {
        unsigned argument;
        std::uint16_t code;
        std::optional<std::uint16_t> predictor;
    } cases[] = {{0, 1, {}}, {1, 32946, {}}, {2, 32773, {}}, {3, 5, 2}, {UINT_MAX, 32773, {}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.argument);
        const TempFolder folder;
        const FailureRecorder log;
        WriteElements(folder.File("a.tif"), Bytes(9999)); // replaced
        RawPicture picture(5, 3, 32, Argb());
        const Written written = Write(picture.raw, folder.File("a.tif"), c.argument);
        ASSERT_EQ(1, written.nResult);
        EXPECT_EQ("", written.sErrorStream);
        EXPECT_TRUE(log.Lines().empty());
        EXPECT_GT(9999U, fs::file_size(folder.File("a.tif")));

        const TiffFile file = OpenTiff(folder.File("a.tif"));
        ASSERT_TRUE(file);
        const std::pair<std::uint32_t, std::optional<std::uint16_t>> tags[] = {
            {TIFFTAG_BITSPERSAMPLE, 8},    {TIFFTAG_PHOTOMETRIC, 2},         {TIFFTAG_PLANARCONFIG, 1},
            {TIFFTAG_SAMPLESPERPIXEL, 4},  {TIFFTAG_ORIENTATION, 1},         {TIFFTAG_RESOLUTIONUNIT, 2},
            {TIFFTAG_COMPRESSION, c.code}, {TIFFTAG_PREDICTOR, c.predictor}, {TIFFTAG_SAMPLEFORMAT, {}}};
        for (const auto& [nTag, expected] : tags)
            EXPECT_EQ(expected, Tag<std::uint16_t>(file, nTag)) << nTag;
        EXPECT_EQ(5U, Tag<std::uint32_t>(file, TIFFTAG_IMAGEWIDTH));
        EXPECT_EQ(3U, TIFFNumberOfStrips(file.get()));
        EXPECT_EQ(300.0F, Tag<float>(file, TIFFTAG_XRESOLUTION));
        EXPECT_EQ(300.0F, Tag<float>(file, TIFFTAG_YRESOLUTION));
        std::uint16_t nPage = 0, nPages = 1;
        EXPECT_EQ(1, TIFFGetField(file.get(), TIFFTAG_PAGENUMBER, &nPage, &nPages));
        EXPECT_EQ(101, nPage);
        EXPECT_EQ(Rgba(Argb()), Pixels(file));
        EXPECT_EQ(1, TIFFLastDirectory(file.get()));
    }
}

TEST(WriteLdrTiff, JpegFailsAtTheFirstRow)
{
    const TempFolder folder;
    const FailureRecorder log;
    RawPicture picture(5, 3, 32, Argb());
    const Written written = Write(picture.raw, folder.File("a.tif"), 4);
    EXPECT_EQ(-1, written.nResult);
    EXPECT_EQ("P:write image failed\n", written.sErrorStream);
    EXPECT_TRUE(folder.Names().empty());
    EXPECT_THAT(log.Lines(), testing::ElementsAre(testing::HasSubstr("multiple of")));
}

TEST(WriteLdrTiff, WhatCannotBeOpened)
{
    const TempFolder folder;
    ASSERT_EQ(0, mkfifo(folder.File("pipe").c_str(), 0600));
    for (const auto& [szFile, szReason] :
         {std::pair{"missing/a.tif", "No such file or directory"}, {"pipe", "not a regular file"}}) {
        SCOPED_TRACE(szFile);
        RawPicture picture(5, 3, 32, Argb());
        const FailureRecorder log;
        const Written written = Write(picture.raw, folder.File(szFile));
        EXPECT_EQ(-1, written.nResult);
        EXPECT_EQ("P:image file open failed\n", written.sErrorStream);
        EXPECT_EQ(std::vector{"save: " + folder.File(szFile) + ": " + szReason}, log.Lines());
        EXPECT_EQ(Argb(), picture.Pixels()) << "another attempt with the same record must not turn it again";
    }
}

TEST(WriteLdrTiff, WhatIsNoPicture)
{
    const TempFolder folder;
    WriteText(folder.File("a.tif"), "old");
    RawPicture narrow(0, 3, 32, Argb()), odd(5, 3, 8, Bytes(15));
    RawImage empty{5, 3, 20, 32, 60, nullptr};
    for (RawImage* const pRaw : {&narrow.raw, &odd.raw, &empty}) {
        std::string sReason;
        EXPECT_EQ(-1, WriteLdrTiff(*pRaw, folder.File("a.tif").c_str(), 0, false, &sReason));
        EXPECT_EQ("no name, or no picture", sReason);
    }
    EXPECT_EQ(3U, ReadBytes(folder.File("a.tif")).size());
}

TEST(WriteLdrTiff, FullDiskDeletesTheFile)
{
    const TempFolder folder;
    const std::string sPath = folder.File("a.tif");
    testing::internal::CaptureStderr();
    for (const unsigned nCompression : {0U, 3U}) {
        RawPicture whole(5, 3, 32, Argb());
        ASSERT_EQ(1, WriteLdrTiff(whole.raw, sPath.c_str(), nCompression, false));
        const rlim_t nSize = fs::file_size(sPath);
        for (rlim_t nMissing = 1; nMissing < nSize; nMissing += nMissing < 4 ? 1 : 11) {
            RawPicture picture(5, 3, 32, Argb());
            const FailureRecorder log;
            const ResourceLimit full(RLIMIT_FSIZE, nSize - nMissing);
            ASSERT_EQ(-1, WriteLdrTiff(picture.raw, sPath.c_str(), nCompression, false));
            ASSERT_FALSE(fs::exists(sPath)) << nMissing << " of " << nSize;
            ASSERT_EQ(1U, log.Lines().size());
        }
    }
    testing::internal::GetCapturedStderr();
}
