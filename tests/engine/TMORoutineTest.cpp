// The three roads of tone mapping against a plain mapper, at borders, and with values that no camera gives.
#include "engine/TMORoutine.h"

#include "tests/engine/PlainToneMapper.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/InstructionSets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <stdexcept>

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
            ExpectRoadsEqualPlain(RandomPicture(8, 5), static_cast<float>(nExposure),
                                  static_cast<float>(nGamma / 10.0),
                                  nExposure == 0 ? Roads::ALL : Roads::IN_MEMORY);
}

TEST(ToneMap, LargerPicturesEqualPlain)
{
    ExpectRoadsEqualPlain(RandomPicture(200, 151), 0.5F, 2.2F);
    ExpectRoadsEqualPlain(SmoothPicture(149, 100), -1.5F, 1.8F);
    ExpectRoadsEqualPlain(Scaled(ContrastyPicture(100, 101), 0.001F), 2.5F, 2.6F);
}

TEST(ToneMap, NothingAbove249AndBlackStaysBlack)
{
    Picture picture = RandomPicture(40, 30);
    std::fill_n(picture.vfPixels.begin(), 9, 0.0F);
    const Bytes bytes = MapScaledImage(picture, 5.0F, 1.0F);
    EXPECT_EQ(249, *std::max_element(bytes.begin(), bytes.end()));
    EXPECT_EQ(Bytes(9, 0), Bytes(bytes.begin(), bytes.begin() + 9));
    EXPECT_EQ(Bytes(27, 0), MapScaledImage({3, 3, std::vector<float>(27, 0.0F)}, 5, 3.0F));
    float fBlack = 0;
    EXPECT_THROW(CompressLuminance(&fBlack, 1, 1, 0, 1, -1000, 0.85F, nullptr), std::domain_error);
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
        {"negative", {0, 0, 0}, true, -1, -2, -3},
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

TEST(ToneMap, TheLastPassMayMeetAFileThatHasLostItsEnd)
{
    const TempFolder folder;
    WriteElements(folder.File("short"), Bytes(8 * 5 * 4 - 1));
    const std::vector<float> vfY(20, 1);
    const FailureRecorder failures;
    EXPECT_FALSE(RecombineRows(nullptr, vfY.data(), folder.WideFile("short"), 5, 4, 2.2F));
    EXPECT_THAT(failures.Lines(), testing::ElementsAre(testing::EndsWith("short: the file is too short")));
}

} // namespace

} // namespace LS::Tests
