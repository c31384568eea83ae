// Pixel blocks, and records made from the image library's pictures.
#include "image/RawImage.h"
#include "image/RawConversion.h"
#include "image/filter.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <wx/image.h>

#include <cstdint>
#include <fstream>
#include <optional>

#include <unistd.h>

using namespace LS::Tests;

namespace {

struct MemoryUse {
    std::size_t total, resident; // bytes
};

MemoryUse CurrentMemoryUse()
{
    std::ifstream statm("/proc/self/statm");
    MemoryUse use{};
    statm >> use.total >> use.resident;
    const auto nPage = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return {use.total * nPage, use.resident * nPage};
}

constexpr std::size_t MEBIBYTE = 1 << 20;

/// A picture of any size over three bytes, for code that must not get as far as the pixels.
wxImage PictureWithoutPixels(int nWidth, int nHeight)
{
    static unsigned char pixel[3];
    return {nWidth, nHeight, pixel, true};
}

} // namespace

TEST(AllocImageHandle, GivesZerosThatCostNothingUntilTouched)
{
    const std::size_t nResident = CurrentMemoryUse().resident;
    const ImageHandlePtr pHandle(AllocImageHandle(256 * MEBIBYTE));
    ASSERT_TRUE(pHandle);
    EXPECT_LT(CurrentMemoryUse().resident, nResident + 16 * MEBIBYTE);
    EXPECT_EQ(0, pHandle->pPixels[0]);
    EXPECT_EQ(0, pHandle->pPixels[256 * MEBIBYTE - 1]);
    pHandle->pPixels[256 * MEBIBYTE - 1] = 1;
}

TEST(AllocImageHandle, NullWhenThereIsNoMemory)
{
    EXPECT_EQ(nullptr, AllocImageHandle(0));
    EXPECT_EQ(nullptr, AllocImageHandle(SIZE_MAX));
    FreeImageHandle(nullptr);
    const ResourceLimit limit(RLIMIT_AS, CurrentMemoryUse().total + 256 * MEBIBYTE);
    EXPECT_EQ(nullptr, AllocImageHandle(512 * MEBIBYTE));
    ImageHandle* const pSmall = AllocImageHandle(1);
    EXPECT_NE(nullptr, pSmall);
    FreeImageHandle(pSmall);
}

TEST(ConvertToRaw, MakesOpaquePixelsInRowOrder)
{
    for (const char* szPlane : {"none", "alpha", "mask"}) {
        SCOPED_TRACE(szPlane);
        wxImage image(2, 2);
        image.SetRGB(0, 0, 1, 2, 3);
        image.SetRGB(1, 0, 4, 5, 6);
        image.SetRGB(0, 1, 7, 8, 9);
        image.SetRGB(1, 1, 10, 11, 12);
        if (szPlane == std::string("alpha"))
            image.SetAlpha();
        if (szPlane == std::string("mask"))
            image.SetMaskColour(1, 2, 3);

        RawImage raw;
        ASSERT_EQ(RawConversion::Converted, ConvertToRaw(image, raw));
        const ImageHandlePtr pPixels(raw.data);
        EXPECT_EQ(2, raw.width);
        EXPECT_EQ(2, raw.height);
        EXPECT_EQ(32, raw.bitsPerPixel);
        EXPECT_EQ(8, raw.bytesPerLine);
        EXPECT_EQ(16U, raw.dataSize);
        const auto pixels = [&raw] { return Bytes(RawRow(raw, 0), RawRow(raw, 0) + raw.dataSize); };
        EXPECT_EQ((Bytes{255, 1, 2, 3, 255, 4, 5, 6, 255, 7, 8, 9, 255, 10, 11, 12}), pixels());
        ArgbToRgbaRows(raw);
        EXPECT_EQ((Bytes{1, 2, 3, 255, 4, 5, 6, 255, 7, 8, 9, 255, 10, 11, 12, 255}), pixels());
    }
}

TEST(ConvertToRaw, AnInvalidPictureLeavesTheRecordAlone)
{
    ImageHandle handle{};
    RawImage raw{1, 2, 3, 4, 5, &handle};
    EXPECT_EQ(RawConversion::Invalid, ConvertToRaw(wxImage(), raw));
    EXPECT_EQ(4, raw.bitsPerPixel);
    EXPECT_EQ(&handle, raw.data);
}

TEST(ConvertToRaw, NoMemoryLeavesAnEmptyRecord)
{
    const struct {
        const char* name;
        int width, height;
        bool limited;
    } cases[] = {
        {"more than there is", 16384, 8192, true},
        {"4 GiB, one byte more than the data size holds", 32768, 32768, false},
        {"4 GiB in a single row", 1 << 30, 1, false},
        {"2 GiB in a single row, one byte more than its field holds", 1 << 29, 1, false},
        {"2 ^ 61 pixels", 1 << 30, INT32_MAX, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const rlim_t nRoom = CurrentMemoryUse().total + 256 * MEBIBYTE;
        std::optional<ResourceLimit> limit;
        if (c.limited)
            limit.emplace(RLIMIT_AS, nRoom);
        RawImage raw{1, 2, 3, 4, 5, nullptr};
        EXPECT_EQ(RawConversion::NoMemory, ConvertToRaw(PictureWithoutPixels(c.width, c.height), raw));
        EXPECT_EQ(nullptr, raw.data);
        EXPECT_EQ(0U, raw.dataSize);
        EXPECT_EQ(0, raw.width);
    }
}
