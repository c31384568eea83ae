// Packets, pixels, headers and scanlines of the Radiance format.
#include "HDRFile/Rgbe.h"

#include "tests/support/RgbeReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <memory>
#include <random>

namespace LS::Tests {

namespace {

constexpr float INF = std::numeric_limits<float>::infinity();
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();

/// What a writer puts into a stream; empty if it reports a failure.
Bytes Written(const std::function<int(FILE*)>& write)
{
    char* pText = nullptr;
    std::size_t nSize = 0;
    FILE* const pFile = open_memstream(&pText, &nSize);
    const int nResult = write(pFile);
    std::fclose(pFile);
    const std::unique_ptr<char, decltype(&std::free)> pOwner(pText, std::free);
    return nResult == 0 ? Bytes(pText, pText + nSize) : Bytes();
}

Bytes Packets(const Bytes& plane)
{
    return Written([&](FILE* pFile) {
        return WriteRgbePlane(pFile, plane.data(), static_cast<std::int32_t>(plane.size()));
    });
}

Bytes Scanlines(const std::vector<float>& vfPixels, std::int32_t nWidth, std::int32_t nCount)
{
    return Written([&](FILE* pFile) { return WriteRgbeScanlines(pFile, vfPixels.data(), nWidth, nCount); });
}

Rgbe Converted(float fRed, float fGreen, float fBlue)
{
    Rgbe pixel;
    FloatToRgbe(pixel.data(), fRed, fGreen, fBlue);
    return pixel;
}

/// A pixel by the definition, for channels that aren't negative.
Rgbe PlainPixel(float fRed, float fGreen, float fBlue)
{
    const float fLargest = std::max({fRed, fGreen, fBlue});
    if (fLargest < 1e-32)
        return {0, 0, 0, 0};
    int nExponent = 0;
    const float fFraction = std::frexp(fLargest, &nExponent);
    const auto fScale = static_cast<float>(fFraction * 256.0 / fLargest);
    return {static_cast<unsigned char>(fRed * fScale), static_cast<unsigned char>(fGreen * fScale),
            static_cast<unsigned char>(fBlue * fScale), static_cast<unsigned char>(nExponent + 128)};
}

Bytes operator+(Bytes first, const Bytes& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Bytes Counting(std::size_t nCount)
{
    Bytes bytes(nCount);
    for (std::size_t i = 0; i < nCount; ++i)
        bytes[i] = static_cast<unsigned char>(i);
    return bytes;
}

} // namespace

TEST(RgbePlane, Packets)
{
    const struct {
        const char* szName;
        Bytes plane, packets;
    } cases[] = {
        {"nothing", {}, {}},
        {"one byte", {9}, {1, 9}},
        {"short run before a long one", {5, 5, 7, 7, 7, 7}, {130, 5, 132, 7}},
        {"two short runs before a long one", {5, 5, 6, 6, 7, 7, 7, 7}, {4, 5, 5, 6, 6, 132, 7}},
        {"one byte before a long run", {5, 7, 7, 7, 7}, {1, 5, 132, 7}},
        {"trailing run of 3 alone", {4, 4, 4}, {131, 4}},
        {"trailing run of 3 behind a literal", {1, 4, 4, 4}, {4, 1, 4, 4, 4}},
        {"trailing run of 3 behind a long run", {7, 7, 7, 7, 4, 4, 4}, {132, 7, 131, 4}},
        {"run of 128", Bytes(128, 9), {255, 9, 1, 9}},
        {"rest of 3 behind a full run", Bytes(130, 9), {255, 9, 131, 9}},
        {"literals split at 128", Counting(129), Bytes{128} + Counting(128) + Bytes{1, 128}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        EXPECT_EQ(c.packets, Packets(c.plane));
    }
}

TEST(RgbePlane, RandomPlanesDecodeToThemselves)
{
    std::mt19937 random(1);
    for (std::size_t nLength = 1; nLength <= 600; ++nLength) {
        // Few values give runs of all lengths, many give literal stretches.
        std::uniform_int_distribution<int> value(0, nLength % 3 == 0 ? 255 : 1);
        std::bernoulli_distribution repeat(nLength % 2 == 0 ? 0.9 : 0.3);
        Bytes plane;
        while (plane.size() < nLength)
            plane.push_back(!plane.empty() && repeat(random) ? plane.back()
                                                             : static_cast<unsigned char>(value(random)));
        const Bytes packets = Packets(plane);
        std::size_t nPosition = 0;
        ASSERT_EQ(plane, ReadRgbePlane(packets, nPosition, nLength)) << "length " << nLength;
        ASSERT_EQ(packets.size(), nPosition) << "length " << nLength;
    }
}

TEST(FloatToRgbe, KnownPixels)
{
    const struct {
        const char* szName;
        float fRed, fGreen, fBlue;
        Rgbe expected;
    } cases[] = {
        {"black", 0, 0, 0, {0, 0, 0, 0}},
        {"below the darkest", 9.9e-33F, 0, 0, {0, 0, 0, 0}},
        {"the largest channel counts", 0.25F, 3, 0.5F, {16, 192, 32, 130}},
        {"a negative channel keeps its low byte", 1, -0.5F, -2, {128, 192, 0, 129}},
        {"a negative channel truncates towards zero", 1, -0.0078F, 0, {128, 0, 0, 129}},
        {"far below the negative range", 1e-10F, -3e38F, -INF, {219, 0, 0, 95}},
        {"the exponent wraps", 0x1p127F, 0, 0, {128, 0, 0, 0}},
        {"no number beside a number", NOT_A_NUMBER, 1, NOT_A_NUMBER, {0, 128, 0, 129}},
        {"no number at all", NOT_A_NUMBER, NOT_A_NUMBER, NOT_A_NUMBER, {0, 0, 0, 0}},
        {"infinity", INF, 1, INF, {255, 0, 255, 255}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        EXPECT_EQ(c.expected, Converted(c.fRed, c.fGreen, c.fBlue));
    }
}

TEST(FloatToRgbe, EqualsTheDefinition)
{
    std::mt19937 random(2);
    std::uniform_real_distribution<float> fMagnitude(-33, 38), fShare(0, 1);
    for (int i = 0; i < 100000; ++i) {
        const float fLargest = std::pow(10.0F, fMagnitude(random));
        std::array<float, 3> fChannels{fLargest, fLargest * fShare(random), fLargest * fShare(random)};
        std::rotate(fChannels.begin(), fChannels.begin() + i % 3, fChannels.end());
        const Rgbe pixel = Converted(fChannels[0], fChannels[1], fChannels[2]);
        ASSERT_EQ(PlainPixel(fChannels[0], fChannels[1], fChannels[2]), pixel) << fLargest;
    }
}

TEST(RgbeHeader, Lines)
{
    const std::int32_t nAll = RgbeHeaderInfo::PROGRAM_TYPE | RgbeHeaderInfo::GAMMA | RgbeHeaderInfo::EXPOSURE;
    const RgbeHeaderInfo unused{0, "RADIANCE", 2.2F, 0.5F}, all{nAll, "RADIANCE", 2.2F, 0.5F};
    const struct {
        const RgbeHeaderInfo* pInfo;
        const char* szHeader;
    } cases[] = {
        {nullptr, "#?RGBE\nFORMAT=32-bit_rle_rgbe\n\n-Y 480 +X 640\n"},
        {&unused, "#?RGBE\nFORMAT=32-bit_rle_rgbe\n\n-Y 480 +X 640\n"},
        {&all, "#?RADIANCE\nGAMMA=2.2\nEXPOSURE=0.5\nFORMAT=32-bit_rle_rgbe\n\n-Y 480 +X 640\n"},
    };
    for (const auto& c : cases) {
        const Bytes header = Written([&](FILE* pFile) { return WriteRgbeHeader(pFile, 640, 480, c.pInfo); });
        EXPECT_EQ(c.szHeader, std::string(header.begin(), header.end()));
    }
}

TEST(RgbeScanlines, WidthDecidesTheForm)
{
    const struct {
        std::int32_t nWidth;
        Bytes start;
    } cases[] = {
        {1, {128, 64, 32, 129}},   {7, {128, 64, 32, 129}},        {8, {2, 2, 0, 8, 136, 128, 136, 64}},
        {300, {2, 2, 1, 44, 255}}, {32767, {2, 2, 127, 255, 255}}, {32768, {128, 64, 32, 129}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.nWidth);
        constexpr std::int32_t COUNT = 2;
        std::vector<float> vfPixels;
        for (std::int32_t i = 0; i < COUNT * c.nWidth; ++i)
            vfPixels.insert(vfPixels.end(), {1, 0.5F, 0.25F});
        const Bytes scanlines = Scanlines(vfPixels, c.nWidth, COUNT);
        ASSERT_GE(scanlines.size(), c.start.size());
        EXPECT_EQ(c.start, Bytes(scanlines.begin(), scanlines.begin() + std::ssize(c.start)));

        const Bytes header =
            Written([&](FILE* pFile) { return WriteRgbeHeader(pFile, c.nWidth, COUNT, nullptr); });
        const RgbePicture picture = ReadRgbe(header + scanlines);
        EXPECT_EQ(std::vector<Rgbe>(vfPixels.size() / 3, Rgbe{128, 64, 32, 129}), picture.vPixels);
    }
}

} // namespace LS::Tests
