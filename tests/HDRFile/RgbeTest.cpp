// Packets, pixels, headers and scanlines of the Radiance format.
#include "HDRFile/Rgbe.h"

#include "tests/support/RgbeReader.h"

#include <gtest/gtest.h>

#include <algorithm>
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
        {"one byte", {9}, {1, 9}},
        {"short run before a long one", {5, 5, 7, 7, 7, 7}, {130, 5, 132, 7}},
        {"two short runs before a long one", {5, 5, 6, 6, 7, 7, 7, 7}, {4, 5, 5, 6, 6, 132, 7}},
        {"one byte before a long run", {5, 7, 7, 7, 7}, {1, 5, 132, 7}},
        {"trailing run of 3 alone", {4, 4, 4}, {131, 4}},
        {"trailing run of 3 behind a literal", {1, 4, 4, 4}, {4, 1, 4, 4, 4}},
        {"run of 128", Bytes(128, 9), {255, 9, 1, 9}},
        {"literals split at 128", Counting(129), Bytes{128} + Counting(128) + Bytes{1, 128}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.packets, Packets(c.plane)) << c.szName;
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
        {"the exponent wraps", 0x1p127F, 0, 0, {128, 0, 0, 0}},
        {"no number beside a number", NOT_A_NUMBER, 1, NOT_A_NUMBER, {0, 128, 0, 129}},
        {"infinity", INF, 1, INF, {255, 0, 255, 255}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.expected, Converted(c.fRed, c.fGreen, c.fBlue)) << c.szName;
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
