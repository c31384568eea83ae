// The three paths of tone mapping give the same bytes, at borders and for values that no camera gives.
#include "engine/TMORoutine.h"

#include "Util/Paths.h"
#include "engine/CacheFolder.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/InstructionSets.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <stdexcept>

namespace LS::Tests {

namespace {

constexpr float INF = std::numeric_limits<float>::infinity();
constexpr float NAN_VALUE = std::numeric_limits<float>::quiet_NaN();

/// Linear radiance, interleaved R, G, B.
struct Picture {
    std::int32_t nWidth, nHeight;
    std::vector<float> vfPixels;
};

Picture Painted(std::int32_t nWidth, std::int32_t nHeight,
                const std::function<float(std::int32_t x, std::int32_t y, int nChannel)>& paint)
{
    Picture picture{nWidth, nHeight, {}};
    for (std::int32_t y = 0; y < nHeight; ++y)
        for (std::int32_t x = 0; x < nWidth; ++x)
            for (int c = 0; c < 3; ++c)
                picture.vfPixels.push_back(paint(x, y, c));
    return picture;
}

/// Eight decades, saturated colours.
Picture RandomPicture(std::int32_t nWidth, std::int32_t nHeight)
{
    std::mt19937 random(static_cast<unsigned>(nWidth * 1000 + nHeight));
    std::uniform_real_distribution<float> decades(-4, 4);
    return Painted(nWidth, nHeight, [&](auto, auto, auto) {
        return random() % 8 == 0 ? 0.0F : std::pow(10.0F, decades(random));
    });
}

/// A gradient; all blocks are smooth.
Picture SmoothPicture(std::int32_t nWidth, std::int32_t nHeight)
{
    return Painted(nWidth, nHeight, [&](std::int32_t x, std::int32_t y, int c) {
        return 2.0F + static_cast<float>(x + 2 * y + c) / static_cast<float>(nWidth + nHeight);
    });
}

/// Dark with specks.
Picture ContrastyPicture(std::int32_t nWidth, std::int32_t nHeight, float fSpeck = 4000)
{
    return Painted(nWidth, nHeight, [&](std::int32_t x, std::int32_t y, int c) {
        return (x * 7 + y * 5) % 11 == 0 ? fSpeck : 0.05F * static_cast<float>(1 + c + (x + y) % 5);
    });
}

Bytes Taken(const Util::PixelBuffer& pPixels, const Picture& picture)
{
    return pPixels ? Bytes(pPixels.get(), pPixels.get() + picture.vfPixels.size()) : Bytes();
}

Bytes Map(const Picture& picture, float fExposure, float fGamma)
{
    return Taken(ToneMapScaledImage(picture.vfPixels.data(), picture.nWidth, picture.nHeight, fExposure,
                                    fGamma, nullptr),
                 picture);
}

/// The same by a function that reads a file.
template <typename Map> Bytes MapFile(Map map, const Picture& picture, float fExposure, float fGamma)
{
    CreateCacheFolder();
    const std::wstring sFile =
        CacheFolder() + L"picture.tmp"; // one for all, as some disks take long over new
    WriteElements(Util::NarrowPath(sFile), picture.vfPixels);
    return Taken(map(sFile, picture.nWidth, picture.nHeight, fExposure, fGamma, nullptr), picture);
}

/// What the definition of each step makes of a picture; the kernels must make the same.
Bytes MapAnywhere(const Picture& picture, float fExposure, float fGamma)
{
    SCOPED_TRACE(testing::Message() << picture.nWidth << " x " << picture.nHeight << ", exposure "
                                    << fExposure << ", gamma " << fGamma);
    const InstructionLimit plain(Util::InstructionSet::Plain);
    const Bytes bytes = Map(picture, fExposure, fGamma);
    OnEveryInstructionSet([&] { EXPECT_EQ(bytes, Map(picture, fExposure, fGamma)); });
    return bytes;
}

/// The same on all three paths. Something in the picture has a luminance above 1.
Bytes MapEverywhere(const Picture& picture, float fExposure, float fGamma)
{
    const Bytes bytes = MapAnywhere(picture, fExposure, fGamma);
    EXPECT_EQ(bytes, MapFile(ToneMapCacheInMemory, picture, fExposure, fGamma));
    EXPECT_EQ(bytes, MapFile(ToneMapCacheByRows, picture, fExposure, fGamma));
    return bytes;
}

/// A number that any other byte or order of bytes changes (FNV-1a). The expected ones below are those of a
/// mapper that was written apart from the engine, one published step after the other.
class Digest {
public:
    void Add(const Bytes& bytes)
    {
        for (const unsigned char nByte : bytes)
            m_nNumber = (m_nNumber ^ nByte) * 0x100000001B3;
    }
    std::uint64_t Number() const { return m_nNumber; }

private:
    std::uint64_t m_nNumber = 0xCBF29CE484222325;
};

// Thousands of small files take some disks seconds, so not every picture goes through files.
TEST(ToneMap, SmallSizes)
{
    Digest digest;
    for (std::int32_t nHeight = 1; nHeight <= 13; ++nHeight)
        for (std::int32_t nWidth = 1; nWidth <= 13; ++nWidth) {
            const auto fExposure = static_cast<float>((nWidth + 3 * nHeight) % 11 - 5);
            digest.Add(MapAnywhere(RandomPicture(nWidth, nHeight), fExposure, 2.2F));
            digest.Add(MapEverywhere(SmoothPicture(nWidth, nHeight), fExposure, 2.2F));
            digest.Add(MapAnywhere(ContrastyPicture(nWidth, nHeight), fExposure, 2.2F));
        }
    EXPECT_EQ(5054625164496921458U, digest.Number());
}

TEST(ToneMap, AllSliderPositions)
{
    Digest digest;
    for (int nExposure = -5; nExposure <= 5; ++nExposure)
        for (int nGamma = 10; nGamma <= 30; ++nGamma) {
            const auto map = nExposure == 0 ? MapEverywhere : MapAnywhere;
            digest.Add(
                map(RandomPicture(8, 5), static_cast<float>(nExposure), static_cast<float>(nGamma / 10.0)));
        }
    EXPECT_EQ(14248462086111982511U, digest.Number());
}

TEST(ToneMap, LargerPictures)
{
    Digest digest;
    digest.Add(MapEverywhere(RandomPicture(200, 151), 0.5F, 2.2F));
    digest.Add(MapEverywhere(SmoothPicture(149, 100), -1.5F, 1.8F));
    // By rows the search for the brightest luminance starts at 1.
    const Picture dark = ContrastyPicture(100, 101, 0.4F);
    digest.Add(MapAnywhere(dark, 2.5F, 2.6F));
    digest.Add(MapFile(ToneMapCacheByRows, dark, 2.5F, 2.6F));
    EXPECT_EQ(12662707232568272433U, digest.Number());
}

TEST(ToneMap, NothingAbove249AndBlackStaysBlack)
{
    Picture picture = RandomPicture(40, 30);
    std::fill_n(picture.vfPixels.begin(), 9, 0.0F);
    const Bytes bytes = Map(picture, 5.0F, 1.0F);
    EXPECT_EQ(249, *std::max_element(bytes.begin(), bytes.end()));
    EXPECT_EQ(Bytes(9, 0), Bytes(bytes.begin(), bytes.begin() + 9));
    EXPECT_EQ(Bytes(27, 0), Map({3, 3, std::vector<float>(27, 0.0F)}, 5, 3.0F));
    float fBlack = 0;
    EXPECT_THROW(CompressLuminance(&fBlack, 1, 1, 0, 1, -1000, 0.85F, nullptr), std::domain_error);
    EXPECT_EQ(Bytes(3, 249), Map({1, 1, {1, 1, 1}}, 0, 2.2F)); // a lone grey is the brightest
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
        {"one channel negative", {249, 0, 249}, true, 50, -5, 50},
        {"negative luminance, positive sum", {0, 0, 0}, false, 0, -1, 9},
        {"infinite", {0, 0, 0}, false, INF, INF, INF},
        {"huge", {0, 249, 0}, true, 3e38F, 3e38F, 3e38F}, // the sum overflows: no chromaticity
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Picture picture = SmoothPicture(7, 5);
        picture.vfPixels[0] = c.fR;
        picture.vfPixels[1] = c.fG;
        picture.vfPixels[2] = c.fB;
        const Bytes bytes = MapEverywhere(picture, 0, 2.2F);
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
