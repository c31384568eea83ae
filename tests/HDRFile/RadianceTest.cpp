// Whole Radiance pictures, read back by a reader that shares no code with the writer.
#include "HDRFile/Radiance.h"

#include "tests/HDRFile/CachePicture.h"
#include "tests/support/RgbeReader.h"

#include <gtest/gtest.h>

namespace LS::Tests {

TEST(Radiance, RoundTrip)
{
    for (const std::int32_t nWidth : {1, 7, 8, 301}) {
        SCOPED_TRACE(nWidth);
        const CachePicture cache(nWidth, 5);
        const std::string sFile = cache.File("picture.hdr");
        WriteText(sFile, std::string(100000, '?')); // a longer file of that name leaves nothing behind
        ASSERT_TRUE(WriteRadianceFile(cache.sPath.c_str(), sFile.c_str(), nWidth, 5, nullptr));

        const RgbePicture picture = ReadRgbe(ReadBytes(sFile));
        EXPECT_EQ((std::vector<std::string>{"#?RGBE", "FORMAT=32-bit_rle_rgbe"}), picture.vsHeader);
        ASSERT_EQ(nWidth, picture.nWidth);
        ASSERT_EQ(5, picture.nHeight);
        for (std::size_t i = 0; i < cache.vfStored.size(); ++i) {
            const Rgbe& pixel = picture.vPixels[i / 3];
            ASSERT_LE(RgbeValue(pixel, i % 3), cache.Scaled(i)) << i;
            ASSERT_GT(RgbeValue(pixel, i % 3) + RgbeStep(pixel), cache.Scaled(i)) << i;
        }
    }
}

} // namespace LS::Tests
