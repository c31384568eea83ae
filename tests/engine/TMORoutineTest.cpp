// The three roads of tone mapping against a plain mapper, at borders, and with values that no camera gives.
#include "engine/TMORoutine.h"

#include "engine/CacheFolder.h"
#include "engine/HDRWorkspace.h"
#include "engine/LuminanceCompression.h"
#include "engine/TMOContext.h"
#include "tests/engine/PlainToneMapper.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/InstructionSets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

namespace LS::Tests {

namespace {

constexpr float INF = std::numeric_limits<float>::infinity();
constexpr float NAN_VALUE = std::numeric_limits<float>::quiet_NaN();

enum class Roads { IN_MEMORY, ALL };

void ExpectRoadsEqualPlain(const Picture& picture, float fExposure, float fGamma, Roads roads = Roads::ALL)
{
    SCOPED_TRACE(testing::Message() << picture.nWidth << " x " << picture.nHeight << ", exposure "
                                    << fExposure << ", gamma " << fGamma);
    const Bytes inMemory = MapPlainly(picture, fExposure, fGamma, 0.00001F);
    OnEveryInstructionSet([&] { EXPECT_EQ(inMemory, MapScaledImage(picture, fExposure, fGamma)); });
    if (roads == Roads::IN_MEMORY)
        return;
    EXPECT_EQ(inMemory, MapCacheInMemory(picture, fExposure, fGamma));
    EXPECT_EQ(MapPlainly(picture, fExposure, fGamma, 1.0F), MapCacheByRows(picture, fExposure, fGamma));
}

// Thousands of small files take some disks seconds, so not every picture takes the roads with files.
TEST(ToneMap, SmallSizesEqualPlain)
{
    for (std::int32_t nHeight = 1; nHeight <= 13; ++nHeight)
        for (std::int32_t nWidth = 1; nWidth <= 13; ++nWidth) {
            const auto fExposure = static_cast<float>((nWidth + 3 * nHeight) % 11 - 5);
            ExpectRoadsEqualPlain(RandomPicture(nWidth, nHeight), fExposure, 2.2F);
            ExpectRoadsEqualPlain(SmoothPicture(nWidth, nHeight), fExposure, 2.2F, Roads::IN_MEMORY);
            ExpectRoadsEqualPlain(ContrastyPicture(nWidth, nHeight), fExposure, 2.2F, Roads::IN_MEMORY);
        }
}

TEST(ToneMap, AllSliderPositionsEqualPlain)
{
    for (int nExposure = -5; nExposure <= 5; ++nExposure)
        for (int nGamma = 10; nGamma <= 30; ++nGamma)
            for (const Picture& picture : {RandomPicture(8, 5), ContrastyPicture(5, 7), SmoothPicture(4, 4)})
                ExpectRoadsEqualPlain(picture, static_cast<float>(nExposure),
                                      static_cast<float>(nGamma / 10.0),
                                      nExposure == 0 ? Roads::ALL : Roads::IN_MEMORY);
}

TEST(ToneMap, LargerPicturesEqualPlain)
{
    ExpectRoadsEqualPlain(RandomPicture(200, 151), 0.5F, 2.2F);
    ExpectRoadsEqualPlain(SmoothPicture(149, 100), -1.5F, 1.8F);
    ExpectRoadsEqualPlain(Scaled(ContrastyPicture(100, 101), 0.001F), 2.5F, 2.6F);
}

TEST(ToneMap, RoadsPartOnlyBelowOne)
{
    const Picture bright = RandomPicture(12, 12);
    ASSERT_GT(BrightestLuminance(bright), 1.0F);
    EXPECT_EQ(MapScaledImage(bright, 0, 2.2F), MapCacheByRows(bright, 0, 2.2F));

    const Picture dark = Scaled(bright, 0.5F / BrightestLuminance(bright));
    EXPECT_NE(MapScaledImage(dark, 0, 2.2F), MapCacheByRows(dark, 0, 2.2F));
}

TEST(ToneMap, NothingAbove249AndBlackStaysBlack)
{
    for (const float fExposure : {-5.0F, 0.0F, 5.0F})
        for (const float fGamma : {1.0F, 2.2F, 3.0F}) {
            Picture picture = RandomPicture(40, 30);
            std::fill_n(picture.vfPixels.begin(), 9, 0.0F);
            const Bytes bytes = MapScaledImage(picture, fExposure, fGamma);
            EXPECT_LE(*std::max_element(bytes.begin(), bytes.end()), 249);
            EXPECT_EQ(Bytes(9, 0), Bytes(bytes.begin(), bytes.begin() + 9));
        }
    EXPECT_EQ(Bytes(27, 0), MapScaledImage({3, 3, std::vector<float>(27, 0.0F)}, 5, 3.0F));
    EXPECT_EQ(Bytes(3, 249), MapScaledImage({1, 1, {1, 1, 1}}, 0, 2.2F)); // a lone grey is the brightest
}

TEST(ToneMap, ValuesNoCameraGives)
{
    const struct {
        const char* name;
        Bytes firstPixel;
        bool bOthersShow; ///< or does this one pixel blacken all, through the mean of the picture?
        float fR, fG, fB;
    } cases[] = {
        {"not a number", {0, 0, 0}, true, NAN_VALUE, NAN_VALUE, NAN_VALUE},
        {"one channel not a number", {0, 0, 0}, true, 1, NAN_VALUE, 1},
        {"negative", {0, 0, 0}, true, -1, -2, -3},
        {"negatively infinite", {0, 0, 0}, true, -INF, 1, 1},
        {"one channel negative", {249, 0, 249}, true, 50, -5, 50},
        {"negative luminance, positive sum", {0, 0, 0}, false, 0, -1, 9},
        {"infinite", {0, 0, 0}, false, INF, INF, INF},
        {"huge", {0, 249, 0}, true, 3e38F, 3e38F, 3e38F}, // the sum overflows: no chromaticity
        {"denormal", {0, 0, 0}, true, 1e-44F, 1e-44F, 1e-44F},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Picture picture = SmoothPicture(7, 5);
        picture.vfPixels[0] = c.fR;
        picture.vfPixels[1] = c.fG;
        picture.vfPixels[2] = c.fB;
        ExpectRoadsEqualPlain(picture, 0, 2.2F);
        const Bytes bytes = MapScaledImage(picture, 0, 2.2F);
        EXPECT_EQ(c.firstPixel, Bytes(bytes.begin(), bytes.begin() + 3));
        EXPECT_EQ(c.bOthersShow, bytes.back() > 0);
    }
}

TEST(ToneMap, DividerOfAClippedBlockStaysNine)
{
    // Two pixels of 2 after normalising: m = 4 / 9 - 2, not smooth; with the divisor 2 it would be.
    const ToneCurve curve(0, 2, 0, TONE_BIAS);
    float afBand[] = {2, 2};
    CompressBand(afBand, 2, 1, curve);
    const double dExpected = std::log(3.0) / std::log(2 + 8.0) / std::log10(3.0);
    EXPECT_FLOAT_EQ(static_cast<float>(dExpected), afBand[0]);
    EXPECT_EQ(afBand[0], afBand[1]);
}

TEST(ToneMap, MeanOfNoLuminanceThrows)
{
    float fY = 1;
    try {
        CompressLuminance(&fY, 1, 1, 0, 1, -1000, TONE_BIAS, nullptr);
        FAIL() << "no exception";
    } catch (const std::domain_error& e) {
        EXPECT_STREQ("Divide by Zero", e.what());
    }
}

TEST(ToneMap, ContextWithoutImageOrPlanes)
{
    const FailureRecorder failures;
    TMOContext none(nullptr, 0, 2.2F, TONE_BIAS);
    EXPECT_EQ(-1, none.nWidth);
    EXPECT_EQ(-1, none.nHeight);
    EXPECT_EQ(nullptr, none.Run(nullptr));

    HDRImage image(2, 3);
    image.ppfPlanes[1].reset();
    TMOContext incomplete(&image, 0, 2.2F, TONE_BIAS);
    EXPECT_EQ(2, incomplete.nWidth);
    EXPECT_EQ(3, incomplete.nHeight);
    EXPECT_EQ(nullptr, incomplete.Run(nullptr));
    EXPECT_EQ(2u, failures.Lines().size());
}

TEST(ToneMap, PassesOfTheRowRoad)
{
    const TempFolder folder;
    const Picture picture = ContrastyPicture(5, 4);
    WriteElements(folder.File("cache"), picture.vfPixels);
    float fMax = 0, fLogAverage = 0;
    const auto pYChan =
        SplitLuminance(&fLogAverage, folder.WideFile("cache"), folder.WideFile("xy"), 5, 4, &fMax, nullptr);
    ASSERT_TRUE(pYChan);
    EXPECT_EQ(8u * 5 * 4, ReadBytes(folder.File("xy")).size());
    EXPECT_EQ(fMax, *std::max_element(pYChan.get(), pYChan.get() + 20));
    EXPECT_FLOAT_EQ(BrightestLuminance(picture), fMax);

    // The third pass meets a file that has lost its last byte.
    Bytes xy = ReadBytes(folder.File("xy"));
    xy.pop_back();
    WriteElements(folder.File("short"), xy);
    const FailureRecorder failures;
    EXPECT_FALSE(RecombineRows(nullptr, pYChan.get(), folder.WideFile("short"), 5, 4, 2.2F));
    EXPECT_FALSE(RecombineRows(nullptr, pYChan.get(), folder.WideFile("none"), 5, 4, 2.2F));
    EXPECT_THAT(failures.Lines(), testing::ElementsAre(testing::EndsWith("short: the file is too short"),
                                                       testing::EndsWith("none: No such file or directory")));
}

TEST(ToneMapDeathTest, CallersOweAnImage)
{
    const float afPixel[3] = {};
    EXPECT_DEATH(ToneMapScaledImage(nullptr, 1, 1, 0, 2.2F, nullptr), "pHDRImage != NULL");
    EXPECT_DEATH(ToneMapScaledImage(afPixel, 0, 1, 0, 2.2F, nullptr), "nWidth > 0");
    EXPECT_DEATH(ToneMapCacheInMemory(L"", 1, 0, 0, 2.2F, nullptr), "nHeight > 0");
    EXPECT_DEATH(YxyRowToBytes(nullptr, afPixel, 1, 2.2F), "pYChan != NULL");
    EXPECT_DEATH(YxyRowToBytes(afPixel, nullptr, 1, 2.2F), "pxyChan != NULL");
    EXPECT_DEATH(YxyRowToBytes(afPixel, afPixel, 1, 0), "fGamma > 0");
}

} // namespace

} // namespace LS::Tests
