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

/// The numbers of all tags of the first directory, as they stand in the file.
std::vector<int> TagNumbers(const Bytes& bytes)
{
    const auto number = [&](std::size_t nAt, std::size_t nBytes) {
        std::size_t nValue = 0;
        for (std::size_t i = nBytes; i-- > 0;)
            nValue = nValue << 8 | bytes.at(nAt + i);
        return nValue;
    };
    const std::size_t nDirectory = number(4, 4);
    std::vector<int> vnTags;
    for (std::size_t i = 0; i < number(nDirectory, 2); ++i)
        vnTags.push_back(static_cast<int>(number(nDirectory + 2 + 12 * i, 2)));
    return vnTags;
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
    EXPECT_EQ(5U, TIFFNumberOfStrips(pTiff.get()));
    EXPECT_EQ(37 * 12, TIFFStripSize(pTiff.get()));
    // The nine above and where the strips lie; above all no predictor (317).
    EXPECT_EQ((std::vector<int>{256, 257, 258, 259, 262, 273, 277, 278, 279, 284, 339}),
              TagNumbers(ReadBytes(sFile)));
}

TEST(FloatTiff, SamplesComeBackBitForBit)
{
    for (const std::int32_t nHeight : {1, 40}) {
        CachePicture cache(37, nHeight);
        cache.vfStored[0] = 1000.0F;
        cache.vfStored[1] = -std::numeric_limits<float>::denorm_min();
        cache.vfStored[2] = std::numeric_limits<float>::infinity();
        cache.Store();
        const std::string sFile = cache.File("picture.tif");
        ASSERT_TRUE(WriteFloatTiffFile(cache.sPath.c_str(), sFile.c_str(), 37, nHeight, nullptr));

        const Tiff pTiff = OpenTiff(sFile);
        ASSERT_TRUE(pTiff);
        ASSERT_EQ(1.0F, cache.Scaled(0));
        std::vector<float> vfRow(111);
        for (std::int32_t y = 0; y < nHeight; ++y) {
            const auto nStrip = static_cast<std::uint32_t>(y);
            ASSERT_EQ(37 * 12, TIFFReadEncodedStrip(pTiff.get(), nStrip, vfRow.data(), -1));
            for (std::size_t i = 0; i < vfRow.size(); ++i)
                ASSERT_EQ(cache.Scaled(vfRow.size() * nStrip + i), vfRow[i]) << "row " << y << ", " << i;
        }
    }
}

} // namespace LS::Tests
