// Writes the pieces of a Radiance RGBE picture.
#include "HDRFile/Rgbe.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>

namespace {

// The scanline header holds the width in 15 bits; short rows gain nothing from packets.
constexpr std::int32_t MIN_ENCODED_WIDTH = 8;
constexpr std::int32_t MAX_ENCODED_WIDTH = 0x7FFF;

// A run shorter than 4 costs less within a literal stretch. Count bytes: 129 to 255 and 1 to 128.
constexpr std::int32_t MIN_RUN = 4;
constexpr std::int32_t MAX_RUN = 127;
constexpr std::int32_t MAX_LITERAL = 128;
constexpr std::int32_t RUN_MARK = 128;

constexpr int EXPONENT_BIAS = 128;
constexpr double DARKEST = 1e-32; // exponents further down mean black

// A float holds 2^k as the exponent field k + 127 above 23 bits of mantissa.
constexpr int FLOAT_BIAS = 127;
constexpr int FLOAT_MANTISSA_BITS = 23;

int WriteError()
{
    const int nError = errno;
    std::perror("RGBE write error");
    errno = nError;
    return -1;
}

int WriteBytes(FILE* pFile, const void* pData, std::size_t nBytes)
{
    return std::fwrite(pData, 1, nBytes, pFile) == nBytes ? 0 : WriteError();
}

int WriteRun(FILE* pFile, std::int32_t nLength, unsigned char nValue)
{
    const unsigned char packet[] = {static_cast<unsigned char>(RUN_MARK + nLength), nValue};
    return WriteBytes(pFile, packet, sizeof packet);
}

int WriteLiterals(FILE* pFile, const unsigned char* pData, std::int32_t nCount)
{
    while (nCount > 0) {
        const std::int32_t nLength = std::min(nCount, MAX_LITERAL);
        unsigned char packet[1 + MAX_LITERAL] = {static_cast<unsigned char>(nLength)};
        std::memcpy(packet + 1, pData, static_cast<std::size_t>(nLength));
        if (WriteBytes(pFile, packet, 1 + static_cast<std::size_t>(nLength)) < 0)
            return -1;
        pData += nLength;
        nCount -= nLength;
    }
    return 0;
}

/// The first of nCur .. nCount - 1 from which on MIN_RUN bytes are equal, or nCount.
std::int32_t FindLongRun(const unsigned char* pData, std::int32_t nCur, std::int32_t nCount)
{
    static_assert(MIN_RUN == 4);
    // Looking at the last pair first passes over three bytes at a time where neighbours differ.
    std::int32_t i = nCur;
    while (i < nCount - 3) {
        const unsigned char* const p = pData + i;
        if (p[3] != p[2])
            i += 3;
        else if (p[2] != p[1])
            i += 2;
        else if (p[1] != p[0])
            i += 1;
        else
            return i;
    }
    return nCount;
}

std::int32_t RunLength(const unsigned char* pData, std::int32_t nBegRun, std::int32_t nCount)
{
    const std::int32_t nLongest = std::min(nCount - nBegRun, MAX_RUN);
    std::int32_t nRun = MIN_RUN;
    while (nRun < nLongest && pData[nBegRun + nRun] == pData[nBegRun])
        ++nRun;
    return nRun;
}

/// Writes the bytes before a long run: as a run where two or three equal bytes are all, else as they are.
int WriteBetweenRuns(FILE* pFile, const unsigned char* pData, std::int32_t nCount)
{
    const bool bShortRun =
        nCount > 1 && nCount < MIN_RUN && pData[0] == pData[1] && pData[0] == pData[nCount - 1];
    return bShortRun ? WriteRun(pFile, nCount, pData[0]) : WriteLiterals(pFile, pData, nCount);
}

/// The low byte of a mantissa truncated towards zero; 0 for what is no number.
unsigned char LowByte(float fMantissa)
{
    // From 2^31 on a float is a multiple of 256, so 0 is its low byte indeed.
    if (!(std::fabs(fMantissa) < 0x1p31F))
        return 0;
    return static_cast<unsigned char>(static_cast<std::int32_t>(fMantissa));
}

/// Black, or a pixel with an infinite channel.
void StoreExtreme(unsigned char* pFirst, std::ptrdiff_t nStride, float fRed, float fGreen, float fBlue,
                  float fLargest)
{
    const bool bBright = fLargest >= DARKEST;
    pFirst[0] = bBright && fRed == fLargest ? 255 : 0;
    pFirst[nStride] = bBright && fGreen == fLargest ? 255 : 0;
    pFirst[2 * nStride] = bBright && fBlue == fLargest ? 255 : 0;
    pFirst[3 * nStride] = bBright ? 255 : 0;
}

/// Stores the four bytes of a pixel nStride bytes apart.
inline void StorePixel(unsigned char* pFirst, std::ptrdiff_t nStride, float fRed, float fGreen, float fBlue)
{
    // Starting from 0 loses nothing, since the darkest pixels are black, and passes over what is no number.
    const auto larger = [](float fNew, float fOld) { return fNew > fOld ? fNew : fOld; };
    const float fLargest = larger(fBlue, larger(fGreen, larger(fRed, 0.0F)));
    if (fLargest < DARKEST || std::isinf(fLargest)) {
        StoreExtreme(pFirst, nStride, fRed, fGreen, fBlue, fLargest);
        return;
    }
    // fLargest is m x 2^e with m in [0.5, 1), so the scale m x 256 / fLargest is 2^(8 - e) without rounding.
    // Taken from the bits, e costs neither a call of frexp nor a division; no float from DARKEST on is
    // subnormal.
    const int nExponent =
        static_cast<int>(std::bit_cast<std::uint32_t>(fLargest) >> FLOAT_MANTISSA_BITS) - (FLOAT_BIAS - 1);
    const auto fScale =
        std::bit_cast<float>(static_cast<std::uint32_t>(8 - nExponent + FLOAT_BIAS) << FLOAT_MANTISSA_BITS);
    pFirst[0] = LowByte(fRed * fScale);
    pFirst[nStride] = LowByte(fGreen * fScale);
    pFirst[2 * nStride] = LowByte(fBlue * fScale);
    pFirst[3 * nStride] = static_cast<unsigned char>(nExponent + EXPONENT_BIAS);
}

int WriteEncodedScanline(FILE* pFile, const float* pfPixels, std::int32_t nWidth, unsigned char* pPlanes)
{
    const unsigned char header[] = {2, 2, static_cast<unsigned char>(nWidth >> 8),
                                    static_cast<unsigned char>(nWidth & 0xFF)};
    if (WriteBytes(pFile, header, sizeof header) < 0)
        return -1;
    for (std::int32_t i = 0; i < nWidth; ++i, pfPixels += 3)
        StorePixel(pPlanes + i, nWidth, pfPixels[0], pfPixels[1], pfPixels[2]);
    for (std::ptrdiff_t k = 0; k < 4; ++k)
        if (WriteRgbePlane(pFile, pPlanes + k * nWidth, nWidth) < 0)
            return -1;
    return 0;
}

} // namespace

int WriteRgbeHeader(FILE* pFile, std::int32_t nWidth, std::int32_t nHeight, const RgbeHeaderInfo* pInfo)
{
    const auto has = [pInfo](std::int32_t nField) { return pInfo && (pInfo->valid & nField) != 0; };
    // The precision keeps a program type without its NUL inside its field.
    const bool bWritten = std::fprintf(pFile, "#?%.16s\n",
                                       has(RgbeHeaderInfo::PROGRAM_TYPE) ? pInfo->programType : "RGBE") > 0 &&
                          (!has(RgbeHeaderInfo::GAMMA) ||
                           std::fprintf(pFile, "GAMMA=%g\n", static_cast<double>(pInfo->gamma)) > 0) &&
                          (!has(RgbeHeaderInfo::EXPOSURE) ||
                           std::fprintf(pFile, "EXPOSURE=%g\n", static_cast<double>(pInfo->exposure)) > 0) &&
                          std::fprintf(pFile, "FORMAT=32-bit_rle_rgbe\n\n") > 0 &&
                          std::fprintf(pFile, "-Y %d +X %d\n", nHeight, nWidth) > 0;
    return bWritten ? 0 : WriteError();
}

int WriteRgbeScanlines(FILE* pFile, const float* pfPixels, std::int32_t nWidth, std::int32_t nScanlines)
{
    const std::int64_t nPixels = static_cast<std::int64_t>(nWidth) * nScanlines;
    if (nWidth < MIN_ENCODED_WIDTH || nWidth > MAX_ENCODED_WIDTH)
        return WriteRgbePixels(pFile, pfPixels, nPixels);
    const std::unique_ptr<unsigned char[]> pPlanes(
        new (std::nothrow) unsigned char[4 * static_cast<std::size_t>(nWidth)]);
    if (!pPlanes)
        return WriteRgbePixels(pFile, pfPixels, nPixels);

    const std::ptrdiff_t nRowFloats = 3 * static_cast<std::ptrdiff_t>(nWidth);
    for (std::int32_t y = 0; y < nScanlines; ++y)
        if (WriteEncodedScanline(pFile, pfPixels + y * nRowFloats, nWidth, pPlanes.get()) < 0)
            return -1;
    return 0;
}

int WriteRgbePixels(FILE* pFile, const float* pfPixels, std::int64_t nPixels)
{
    for (; nPixels > 0; --nPixels, pfPixels += 3) {
        unsigned char rgbe[4];
        FloatToRgbe(rgbe, pfPixels[0], pfPixels[1], pfPixels[2]);
        if (WriteBytes(pFile, rgbe, sizeof rgbe) < 0)
            return -1;
    }
    return 0;
}

int WriteRgbePlane(FILE* pFile, const unsigned char* pData, std::int32_t nCount)
{
    std::int32_t nCur = 0;
    while (nCur < nCount) {
        const std::int32_t nBegRun = FindLongRun(pData, nCur, nCount);
        if (WriteBetweenRuns(pFile, pData + nCur, nBegRun - nCur) < 0)
            return -1;
        nCur = nBegRun;
        if (nBegRun < nCount) {
            const std::int32_t nRun = RunLength(pData, nBegRun, nCount);
            if (WriteRun(pFile, nRun, pData[nBegRun]) < 0)
                return -1;
            nCur += nRun;
        }
    }
    return 0;
}

void FloatToRgbe(unsigned char* pRgbe, float fRed, float fGreen, float fBlue)
{
    StorePixel(pRgbe, 1, fRed, fGreen, fBlue);
}
