// Pixel blocks, and records made from the image library's pictures.
#include "image/RawImage.h"
#include "image/RawConversion.h"
#include "tests/image/Pictures.h"
#include "tests/support/ResourceLimit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <optional>

#include <unistd.h>

using namespace LS::Tests;
using testing::ElementsAre;

namespace {

constexpr std::size_t MEBIBYTE = 1 << 20;

/// Room for so many bytes more than this process has now.
class LittleMemory {
public:
    LittleMemory() : m_limit(RLIMIT_AS, Total() + 256 * MEBIBYTE) {}

private:
    static std::size_t Total()
    {
        std::ifstream statm("/proc/self/statm");
        std::size_t nPages = 0;
        statm >> nPages;
        return nPages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    }

    ResourceLimit m_limit;
};

} // namespace

TEST(AllocImageHandle, NullWhenThereIsNoMemory)
{
    EXPECT_EQ(nullptr, AllocImageHandle(0));
    EXPECT_EQ(nullptr, AllocImageHandle(SIZE_MAX));
    const LittleMemory limit;
    EXPECT_EQ(nullptr, AllocImageHandle(512 * MEBIBYTE));
    const ImageHandlePtr pSmall(AllocImageHandle(1));
    ASSERT_NE(nullptr, pSmall);
    EXPECT_EQ(0, pSmall->pPixels[0]);
}

TEST(ConvertToRaw, MakesOpaquePixelsInRowOrder)
{
    wxImage image(1, 2);
    image.SetRGB(0, 0, 1, 2, 3);
    image.SetRGB(0, 1, 4, 5, 6);
    for (const char* szPlane : {"none", "alpha", "mask"}) {
        SCOPED_TRACE(szPlane);
        if (szPlane == std::string("alpha"))
            image.SetAlpha();
        if (szPlane == std::string("mask"))
            image.SetMaskColour(1, 2, 3);
        RawImage raw;
        ASSERT_EQ(RawConversion::Converted, ConvertToRaw(image, raw));
        const ImageHandlePtr pPixels(raw.data);
        EXPECT_THAT((std::vector{raw.width, raw.height, raw.bytesPerLine, raw.bitsPerPixel}),
                    ElementsAre(1, 2, 4, 32));
        EXPECT_THAT(Bytes(RawRow(raw, 0), RawRow(raw, 0) + raw.dataSize),
                    ElementsAre(255, 1, 2, 3, 255, 4, 5, 6));
    }
}

TEST(ConvertToRaw, WhatCannotBeConverted)
{
    ImageHandle handle{};
    RawImage kept{1, 2, 3, 4, 5, &handle};
    EXPECT_EQ(RawConversion::Invalid, ConvertToRaw(wxImage(), kept));
    EXPECT_EQ(&handle, kept.data);

    const struct {
        const char* name;
        int width, height;
    } cases[] = {
        {"more than there is", 16384, 8192},
        {"4 GiB, one byte more than the data size holds", 32768, 32768},
        {"2 GiB in a single row, one byte more than its field holds", 1 << 29, 1},
        {"2 ^ 61 pixels", 1 << 30, INT32_MAX},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        std::optional<LittleMemory> limit;
        if (c.height == 8192)
            limit.emplace();
        RawImage raw{1, 2, 3, 4, 5, nullptr};
        EXPECT_EQ(RawConversion::NoMemory, ConvertToRaw(PictureWithoutPixels(c.width, c.height), raw));
        EXPECT_EQ(nullptr, raw.data);
        EXPECT_EQ(0U, raw.dataSize);
    }
}
