// In-place conversions of pixel records, held to conversions that read one block and write another.
#include "image/filter.h"

#include "tests/image/RawPicture.h"

#include <gtest/gtest.h>

#include <numeric>

using namespace LS::Tests;

namespace {

using Words = std::vector<std::uint16_t>;
using Floats = std::vector<float>;

constexpr struct {
    std::int32_t width, height;
} SIZES[] = {{1, 1}, {2, 1}, {1, 2}, {3, 2}, {5, 7}, {64, 3}};

/// Distinct bytes, as far as they go.
Bytes Counting(std::size_t nBytes)
{
    Bytes bytes(nBytes);
    std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(1));
    return bytes;
}

std::size_t Area(std::int32_t nWidth, std::int32_t nHeight)
{
    return static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight);
}

/// Groups of three samples with another one put in front of each, or of four with the first put last.
Bytes WithOpaqueInFront(const Bytes& rgb, const Bytes& opaque)
{
    Bytes argb;
    for (std::size_t i = 0; i < rgb.size(); i += 3 * opaque.size()) {
        argb.insert(argb.end(), opaque.begin(), opaque.end());
        argb.insert(argb.end(), &rgb[i], &rgb[i] + 3 * opaque.size());
    }
    return argb;
}

Bytes WithFirstLast(const Bytes& argb, std::size_t nSample)
{
    Bytes rgba;
    for (std::size_t i = 0; i < argb.size(); i += 4 * nSample) {
        rgba.insert(rgba.end(), &argb[i] + nSample, &argb[i] + 4 * nSample);
        rgba.insert(rgba.end(), &argb[i], &argb[i] + nSample);
    }
    return rgba;
}

void ExpectLayout(const RawImage& raw, std::int32_t nBitsPerPixel)
{
    EXPECT_EQ(nBitsPerPixel, raw.bitsPerPixel);
    EXPECT_EQ(raw.width * nBitsPerPixel / 8, raw.bytesPerLine);
    EXPECT_EQ(raw.bytesPerLine * raw.height, static_cast<std::int32_t>(raw.dataSize));
}

} // namespace

TEST(Filter, FourthSampleOfEachDepthAndBack)
{
    const struct {
        std::int32_t bitsPerPixel;
        Bytes opaque;
    } depths[] = {
        {24, {255}}, {48, AsBytes(Words{65535})}, {96, AsBytes(Floats{1.0F})} // 0, 0, 128, 63
    };
    for (const auto& depth : depths)
        for (const auto& size : SIZES) {
            SCOPED_TRACE(testing::Message()
                         << depth.bitsPerPixel << " bits, " << size.width << " x " << size.height);
            const std::size_t nSample = depth.opaque.size();
            const Bytes rgb = Counting(Area(size.width, size.height) * 3 * nSample);
            const Bytes argb = WithOpaqueInFront(rgb, depth.opaque);
            RawPicture picture(size.width, size.height, depth.bitsPerPixel, rgb, argb.size());
            for (int i = 0; i < 2; ++i) { // the second time it has four samples and stays
                ThreeToFourBpp(picture.raw);
                ExpectLayout(picture.raw, depth.bitsPerPixel / 3 * 4);
                EXPECT_EQ(argb, picture.Pixels());
            }
            ArgbToRgbaRows(picture.raw);
            ExpectLayout(picture.raw, depth.bitsPerPixel / 3 * 4);
            EXPECT_EQ(WithFirstLast(argb, nSample), picture.Pixels());
        }
}

TEST(Filter, BytesOfTheSmallestPicture)
{
    RawPicture picture(1, 1, 24, {1, 2, 3}, 4);
    ThreeToFourBpp(picture.raw);
    EXPECT_EQ((Bytes{255, 1, 2, 3}), picture.Pixels());
    ArgbToRgbaRows(picture.raw);
    EXPECT_EQ((Bytes{1, 2, 3, 255}), picture.Pixels());
}

TEST(Filter, PaddedRowsLoseTheirPadding)
{
    RawPicture picture(1, 2, 24, {1, 2, 3, 99, 4, 5, 6, 99}, 8);
    ThreeToFourBpp(picture.raw);
    EXPECT_EQ((Bytes{255, 1, 2, 3, 255, 4, 5, 6}), picture.Pixels());

    RawPicture words(1, 2, 48, {0, 1, 0, 2, 0, 3, 99, 99, 0, 4, 0, 5, 0, 6, 99, 99});
    SixteenToEightBit(words.raw);
    EXPECT_EQ((Bytes{1, 2, 3, 4, 5, 6}), words.Pixels());
}

TEST(Filter, EightToSixteenBitIsTimes256)
{
    for (const std::int32_t nDepth : {24, 32})
        for (const auto& size : SIZES) {
            SCOPED_TRACE(testing::Message() << nDepth << " bits, " << size.width << " x " << size.height);
            Bytes bytes = Counting(Area(size.width, size.height) * static_cast<std::size_t>(nDepth) / 8);
            bytes.back() = 255;
            Words words(bytes.size());
            for (std::size_t i = 0; i < bytes.size(); ++i)
                words[i] = static_cast<std::uint16_t>(bytes[i] * 256);
            ASSERT_EQ(65280, words.back());
            RawPicture picture(size.width, size.height, nDepth, bytes, 2 * bytes.size());
            EightToSixteenBit(picture.raw);
            ExpectLayout(picture.raw, 2 * nDepth);
            EXPECT_EQ(AsBytes(words), picture.Pixels());
            SixteenToEightBit(picture.raw);
            ExpectLayout(picture.raw, nDepth);
            EXPECT_EQ(bytes, picture.Pixels());
        }
}

TEST(Filter, SixteenToEightBitCutsOffTheLowByte)
{
    RawPicture picture(2, 1, 48, AsBytes(Words{65280, 65535, 255, 256, 511, 0}));
    SixteenToEightBit(picture.raw);
    EXPECT_EQ((Bytes{255, 255, 0, 1, 1, 0}), picture.Pixels());

    RawPicture floats(1, 1, 96, AsBytes(Floats{1.0F, -2.0F, 0.0F})); // 3f800000 c0000000 0
    SixteenToEightBit(floats.raw);
    ExpectLayout(floats.raw, 48);
    EXPECT_EQ((Bytes{0, 0x3f, 0, 0xc0, 0, 0}), floats.Pixels());
}

TEST(Filter, OtherDepthsAndEmptyRecordsStay)
{
    const struct {
        const char* name;
        void (*convert)(RawImage&);
        std::vector<std::int32_t> untouched;
    } cases[] = {
        {"ThreeToFourBpp", ThreeToFourBpp, {8, 16, 32, 40, 64, 128}},
        {"ArgbToRgbaRows", ArgbToRgbaRows, {8, 24, 40, 48, 96}},
        {"EightToSixteenBit", EightToSixteenBit, {48, 64, 96, 128}},
        {"SixteenToEightBit", SixteenToEightBit, {8, 24, 32}},
    };
    for (const auto& c : cases) {
        for (const std::int32_t nDepth : c.untouched) {
            SCOPED_TRACE(testing::Message() << c.name << ", " << nDepth);
            const Bytes pixels = Counting(Area(3, 2) * static_cast<std::size_t>(nDepth) / 8);
            RawPicture picture(3, 2, nDepth, pixels);
            c.convert(picture.raw);
            ExpectLayout(picture.raw, nDepth);
            EXPECT_EQ(pixels, picture.Pixels());
        }
        RawImage empty{3, 2, 9, 24, 18, nullptr};
        c.convert(empty);
        EXPECT_EQ(24, empty.bitsPerPixel);
    }

    RawPicture odd(1, 2, 8, {1, 2});
    odd.raw.dataSize = 77;
    ThreeToFourBpp(odd.raw);
    EXPECT_EQ(2U, odd.raw.dataSize) << "set anew for depths that are not converted";
}
