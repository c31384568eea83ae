// 8-bit TIFF files, read back by libtiff.
#include "image/tiff.h"

#include "image/RawConversion.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tiffio.h>
#include <wx/image.h>

#include <climits>
#include <filesystem>
#include <memory>
#include <optional>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

using TiffFile = std::unique_ptr<TIFF, decltype(&TIFFClose)>;

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

/// 5 x 3 pixels with a run and a ramp.
wxImage Picture()
{
    wxImage image(5, 3);
    for (int i = 0; i < 15; ++i) {
        const auto nRamp = static_cast<unsigned char>(i < 7 ? 9 : 17 * i);
        image.SetRGB(i % 5, i / 5, nRamp, static_cast<unsigned char>(255 - nRamp), 128);
    }
    return image;
}

/// Calls the writer. @return its result and what it put on the error stream
std::pair<int, std::string> Write(const std::string& sPath, unsigned nCompression)
{
    RawImage raw{};
    EXPECT_EQ(RawConversion::Converted, ConvertToRaw(Picture(), raw));
    const ImageHandlePtr pPixels(raw.data);
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
        EXPECT_EQ((std::pair{1, std::string()}), Write(folder.File("a.tif"), c.argument));
        EXPECT_TRUE(log.Lines().empty());
        EXPECT_GT(9999U, fs::file_size(folder.File("a.tif")));

        TIFFSetWarningHandler(nullptr); // of four samples without a word on the fourth
        const TiffFile file(TIFFOpen(folder.File("a.tif").c_str(), "r"), TIFFClose);
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
        const Bytes pixels = Pixels(file); // R G B A
        for (std::size_t i = 0; i < pixels.size(); ++i)
            ASSERT_EQ(i % 4 == 3 ? 255 : Picture().GetData()[i / 4 * 3 + i % 4], pixels[i]) << i;
        EXPECT_EQ(1, TIFFLastDirectory(file.get()));
    }
}

TEST(WriteLdrTiff, FullDiskDeletesTheFile)
{
    const TempFolder folder;
    const std::string sPath = folder.File("a.tif");
    ASSERT_EQ(1, Write(sPath, 3).first);
    const rlim_t nSize = fs::file_size(sPath);
    for (rlim_t nMissing = 1; nMissing < nSize; nMissing += nMissing < 4 ? 1 : 11) {
        const FailureRecorder log;
        const ResourceLimit full(RLIMIT_FSIZE, nSize - nMissing);
        ASSERT_EQ(-1, Write(sPath, 3).first);
        ASSERT_FALSE(fs::exists(sPath)) << nMissing << " of " << nSize;
        ASSERT_EQ(1U, log.Lines().size());
    }
}
