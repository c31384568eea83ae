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
    const Bytes floats = AsBytes(Floats{1.0F, -2.0F, 0.0F}); // 3f800000 c0000000 0
    const struct {
        const char* name;
        void (*convert)(RawImage&);
        std::int32_t width, height, bitsBefore;
        Bytes before;
        std::int32_t bitsAfter;
        Bytes after;
    } cases[] = {
        {"a fourth sample", ThreeToFourBpp, 2, 1, 24, {1, 2, 3, 4, 5, 6}, 32, {255, 1, 2, 3, 255, 4, 5, 6}},
        {"padded rows lose their padding",
         ThreeToFourBpp,
         1,
         2,
         24,
         {1, 2, 3, 99, 4, 5, 6, 99},
         32,
         {255, 1, 2, 3, 255, 4, 5, 6}},
        {"of words", ThreeToFourBpp, 1, 1, 48, AsBytes(Words{1, 2, 3}), 64, AsBytes(Words{65535, 1, 2, 3})},
        {"of floats", ThreeToFourBpp, 1, 1, 96, floats, 128, AsBytes(Floats{1.0F, 1.0F, -2.0F, 0.0F})},
        {"there are four", ThreeToFourBpp, 1, 1, 32, {1, 2, 3, 4}, 32, {1, 2, 3, 4}},
        {"the first sample last",
         ArgbToRgbaRows,
         1,
         2,
         32,
         {1, 2, 3, 4, 5, 6, 7, 8},
         32,
         {2, 3, 4, 1, 6, 7, 8, 5}},
        {"of words", ArgbToRgbaRows, 1, 1, 64, AsBytes(Words{1, 2, 3, 4}), 64, AsBytes(Words{2, 3, 4, 1})},
        {"there are three", ArgbToRgbaRows, 1, 1, 24, {1, 2, 3}, 24, {1, 2, 3}},
        {"times 256",
         EightToSixteenBit,
         1,
         2,
         24,
         {0, 1, 2, 3, 4, 255},
         48,
         AsBytes(Words{0, 256, 512, 768, 1024, 65280})},
        {"words stay", EightToSixteenBit, 1, 1, 48, AsBytes(Words{1, 2, 3}), 48, AsBytes(Words{1, 2, 3})},
        {"the low byte goes",
         SixteenToEightBit,
         2,
         1,
         48,
         AsBytes(Words{65280, 65535, 255, 256, 511, 0}),
         24,
         {255, 255, 0, 1, 1, 0}},
        {"of padded rows",
         SixteenToEightBit,
         1,
         2,
         48,
         {0, 1, 0, 2, 0, 3, 99, 99, 0, 4, 0, 5, 0, 6, 99, 99},
         24,
         {1, 2, 3, 4, 5, 6}},
        {"bytes stay", SixteenToEightBit, 1, 1, 32, {1, 2, 3, 4}, 32, {1, 2, 3, 4}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        RawPicture picture(c.width, c.height, c.bitsBefore, c.before, c.after.size());
        c.convert(picture.raw);
        EXPECT_EQ(c.bitsAfter, picture.raw.bitsPerPixel);
        EXPECT_EQ(c.width * c.bitsAfter / 8, picture.raw.bytesPerLine);
        EXPECT_EQ(c.after, picture.Pixels());

        RawImage empty{3, 2, 9, 24, 18, nullptr};
        c.convert(empty);
        EXPECT_EQ(24, empty.bitsPerPixel);
    }
}
