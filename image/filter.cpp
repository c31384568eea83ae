// Layout conversions. Samples are moved as bytes, since a block promises no alignment for their types.
#include "image/filter.h"

#include <cstddef>
#include <cstring>

namespace {

void SetLayout(RawImage& raw, std::int32_t nBitsPerPixel)
{
    raw.bitsPerPixel = nBitsPerPixel;
    raw.bytesPerLine = static_cast<std::int32_t>(std::int64_t{raw.width} * nBitsPerPixel / 8);
}

void SetDataSize(RawImage& raw)
{
    raw.dataSize = static_cast<std::uint32_t>(std::int64_t{raw.bytesPerLine} * raw.height);
}

/// From the last pixel to the first, as the wider pixels grow into the room behind them.
template <typename Sample> void InsertOpaqueSample(RawImage& raw, Sample opaque)
{
    constexpr std::ptrdiff_t nThree = 3 * sizeof(Sample), nFour = 4 * sizeof(Sample);
    for (std::ptrdiff_t y = raw.height - 1; y >= 0; --y) {
        const unsigned char* const pOld = raw.data->pPixels + y * raw.bytesPerLine;
        unsigned char* const pNew = raw.data->pPixels + y * raw.width * nFour;
        for (std::ptrdiff_t x = raw.width - 1; x >= 0; --x) {
            std::memmove(pNew + x * nFour + sizeof(Sample), pOld + x * nThree, nThree);
            std::memcpy(pNew + x * nFour, &opaque, sizeof(Sample));
        }
    }
    SetLayout(raw, nFour * 8);
}

template <std::size_t nSample> void MoveFirstSampleBack(unsigned char* pRow, std::int32_t nCount)
{
    for (std::int32_t x = 0; x < nCount; ++x, pRow += 4 * nSample) {
        unsigned char first[nSample];
        std::memcpy(first, pRow, nSample);
        std::memmove(pRow, pRow + nSample, 3 * nSample);
        std::memcpy(pRow + 3 * nSample, first, nSample);
    }
}

} // namespace

void ThreeToFourBpp(RawImage& raw)
{
    if (!raw.data)
        return;
    switch (raw.bitsPerPixel) {
    case 32:
    case 64:
    case 128:
        return;
    case 24:
        InsertOpaqueSample(raw, std::uint8_t{255});
        break;
    case 48:
        InsertOpaqueSample(raw, std::uint16_t{65535});
        break;
    case 96:
        InsertOpaqueSample(raw, 1.0F);
        break;
    default:
        break;
    }
    SetDataSize(raw);
}

void ArgbToRgbaRow(unsigned char* pRow, std::int32_t nCount, std::int32_t nBitsPerPixel)
{
    switch (nBitsPerPixel) {
    case 32:
        return MoveFirstSampleBack<1>(pRow, nCount);
    case 64:
        return MoveFirstSampleBack<2>(pRow, nCount);
    case 128:
        return MoveFirstSampleBack<4>(pRow, nCount);
    default:
        return;
    }
}

void ArgbToRgbaRows(RawImage& raw)
{
    if (!raw.data)
        return;
    for (std::int32_t y = 0; y < raw.height; ++y)
        ArgbToRgbaRow(RawRow(raw, y), raw.width, raw.bitsPerPixel);
}

void EightToSixteenBit(RawImage& raw)
{
    if (!raw.data || raw.bitsPerPixel > 32)
        return;
    const std::ptrdiff_t nSamples = std::ptrdiff_t{raw.width} * raw.bitsPerPixel / 8; // in a row
    for (std::ptrdiff_t y = raw.height - 1; y >= 0; --y) {
        const unsigned char* const pOld = raw.data->pPixels + y * raw.bytesPerLine;
        unsigned char* const pNew = raw.data->pPixels + y * nSamples * 2;
        for (std::ptrdiff_t i = nSamples - 1; i >= 0; --i) {
            const auto nWide = static_cast<std::uint16_t>(pOld[i] * 256);
            std::memcpy(pNew + 2 * i, &nWide, sizeof nWide);
        }
    }
    SetLayout(raw, raw.bitsPerPixel * 2);
    SetDataSize(raw);
}

void SixteenToEightBit(RawImage& raw)
{
    if (!raw.data || raw.bitsPerPixel < 48)
        return;
    const std::ptrdiff_t nSamples = std::ptrdiff_t{raw.width} * raw.bitsPerPixel / 16;
    for (std::ptrdiff_t y = 0; y < raw.height; ++y) {
        const unsigned char* const pOld = raw.data->pPixels + y * raw.bytesPerLine;
        unsigned char* const pNew = raw.data->pPixels + y * nSamples;
        for (std::ptrdiff_t i = 0; i < nSamples; ++i) {
            std::uint16_t nWide = 0;
            std::memcpy(&nWide, pOld + 2 * i, sizeof nWide);
            pNew[i] = static_cast<unsigned char>(nWide >> 8);
        }
    }
    SetLayout(raw, raw.bitsPerPixel / 2);
    SetDataSize(raw);
}
