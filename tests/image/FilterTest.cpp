// In-place conversions of pixel records.
#include "image/filter.h"

#include "tests/image/RawPicture.h"

#include <gtest/gtest.h>

using namespace LS::Tests;

namespace {

using Words = std::vector<std::uint16_t>;
using Floats = std::vector<float>;

} // namespace

TEST(Filter, MovesSamplesWithinTheRecord)
{
    const Bytes floats = AsBytes(Floats{1.0F, -2.0F, 0.0F, 2.0F, 4.0F, 0.0F});
    const Bytes fourFloats = AsBytes(Floats{1.0F, 1.0F, -2.0F, 0.0F, 1.0F, 2.0F, 4.0F, 0.0F});
    const Words wide{0, 256, 512, 768, 1024, 65280}, fine{65280, 65535, 255, 256, 511, 0};
    const struct { // two rows of one pixel
        void (*convert)(RawImage&);
        Bytes before;
        std::int32_t bitsBefore, bitsAfter;
        Bytes after;
    } cases[] = {
        {ThreeToFourBpp, {1, 2, 3, 4, 5, 6}, 24, 32, {255, 1, 2, 3, 255, 4, 5, 6}},
        {ThreeToFourBpp, {1, 2, 3, 99, 4, 5, 6, 99}, 24, 32, {255, 1, 2, 3, 255, 4, 5, 6}}, // padded
        {ThreeToFourBpp, floats, 96, 128, fourFloats},
        {ThreeToFourBpp, {1, 2, 3, 4, 5, 6, 7, 8}, 32, 32, {1, 2, 3, 4, 5, 6, 7, 8}},
        {ArgbToRgbaRows, {1, 2, 3, 4, 5, 6, 7, 8}, 32, 32, {2, 3, 4, 1, 6, 7, 8, 5}},
        {EightToSixteenBit, {0, 1, 2, 3, 4, 255}, 24, 48, AsBytes(wide)},
        {SixteenToEightBit, AsBytes(fine), 48, 24, {255, 255, 0, 1, 1, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.bitsBefore << " to " << c.bitsAfter);
        RawPicture picture(1, 2, c.bitsBefore, c.before, c.after.size());
        c.convert(picture.raw);
        EXPECT_EQ(c.bitsAfter, picture.raw.bitsPerPixel);
        EXPECT_EQ(c.bitsAfter / 8, picture.raw.bytesPerLine);
        EXPECT_EQ(c.after, picture.Pixels());

        RawImage empty{3, 2, 9, 24, 18, nullptr};
        c.convert(empty);
        EXPECT_EQ(24, empty.bitsPerPixel);
    }
}
