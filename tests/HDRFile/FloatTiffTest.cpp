// Floating point TIFF pictures, read back by libtiff.
#include "HDRFile/FloatTiff.h"

#include "tests/HDRFile/CachePicture.h"

#include <gtest/gtest.h>
#include <tiffio.h>

#include <limits>
#include <memory>

namespace LS::Tests {

namespace {

using Tiff = std::unique_ptr<TIFF, decltype(&TIFFClose)>;

Tiff OpenTiff(const std::string& sFile)
{
    return {TIFFOpen(sFile.c_str(), "r"), TIFFClose};
}

} // namespace

TEST(FloatTiff, Tags)
{
    const CachePicture cache(37, 5);
    const std::string sFile = cache.File("picture.tif");
    ASSERT_TRUE(WriteFloatTiffFile(cache.sPath.c_str(), sFile.c_str(), 37, 5, nullptr));

    const Tiff pTiff = OpenTiff(sFile);
    ASSERT_TRUE(pTiff);
    const struct {
        ttag_t nTag;
        std::uint32_t nValue;
        bool bLong;
    } cases[] = {
        {TIFFTAG_IMAGEWIDTH, 37, true},
        {TIFFTAG_IMAGELENGTH, 5, true},
        {TIFFTAG_COMPRESSION, COMPRESSION_LZW, false},
        {TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG, false},
        {TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB, false},
        {TIFFTAG_BITSPERSAMPLE, 32, false},
        {TIFFTAG_SAMPLESPERPIXEL, 3, false},
        {TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP, false},
        {TIFFTAG_ROWSPERSTRIP, 1, true},
    };
    for (const auto& c : cases) {
        std::uint32_t nLong = 0;
        std::uint16_t nShort = 0;
        ASSERT_EQ(1, c.bLong ? TIFFGetField(pTiff.get(), c.nTag, &nLong)
                             : TIFFGetField(pTiff.get(), c.nTag, &nShort));
        EXPECT_EQ(c.nValue, c.bLong ? nLong : nShort) << c.nTag;
    }
    EXPECT_EQ(0, TIFFGetField(pTiff.get(), TIFFTAG_PREDICTOR, nullptr));
    EXPECT_EQ(37 * 12, TIFFStripSize(pTiff.get()));
}

TEST(FloatTiff, SamplesComeBackBitForBit)
{
    CachePicture cache(37, 40);
    cache.vfStored[1] = -std::numeric_limits<float>::denorm_min();
    cache.vfStored[2] = std::numeric_limits<float>::infinity();
    cache.Store();
    const std::string sFile = cache.File("picture.tif");
    ASSERT_TRUE(WriteFloatTiffFile(cache.sPath.c_str(), sFile.c_str(), 37, 40, nullptr));

    const Tiff pTiff = OpenTiff(sFile);
    ASSERT_TRUE(pTiff);
    std::vector<float> vfRow(111);
    for (std::uint32_t y = 0; y < 40; ++y) {
        ASSERT_EQ(37 * 12, TIFFReadEncodedStrip(pTiff.get(), y, vfRow.data(), -1));
        for (std::size_t i = 0; i < vfRow.size(); ++i)
            ASSERT_EQ(cache.Scaled(vfRow.size() * y + i), vfRow[i]) << "row " << y << ", " << i;
    }
}

} // namespace LS::Tests
