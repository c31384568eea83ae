// The Radiance RGBE format piece by piece: header, scanlines, packets, pixels.
//
// A picture is a text header, a resolution line and the scanlines from the top. An RGBE pixel is three
// 8-bit mantissas and one exponent E that they share: a mantissa M stands for M x 2^(E - 136).
// Format: G. Ward, "Real Pixels", Graphics Gems II, 1991, and the Radiance file format notes.
#pragma once

#include <cstdint>
#include <cstdio>

/// Header lines that a picture may go without; `valid` says which are present.
struct RgbeHeaderInfo {
    enum : std::int32_t { PROGRAM_TYPE = 1, GAMMA = 2, EXPOSURE = 4 };

    std::int32_t valid = 0;    ///< bit mask of the names above
    char programType[16] = ""; ///< NUL-terminated; replaces "RGBE" on the first line
    float gamma = 1;           ///< of the image
    float exposure = 1;        ///< factor that the pixels have been multiplied by
};

// The writers below want pFile open for binary writing; it stays the caller's. They give 0, or -1 after a
// failed write: then "RGBE write error" and the system's reason stand on the standard error stream, errno
// still holds the reason, and what was written before stays in the file.

/// Writes all that stands before the first scanline.
/// @param pInfo  optional header lines, or null for none
int WriteRgbeHeader(FILE* pFile, std::int32_t nWidth, std::int32_t nHeight, const RgbeHeaderInfo* pInfo);

/// Writes whole scanlines, run-length encoded for a width of 8 to 32767 and flat otherwise.
/// @param pfPixels  nWidth x nScanlines x 3 floats, interleaved R, G, B
int WriteRgbeScanlines(FILE* pFile, const float* pfPixels, std::int32_t nWidth, std::int32_t nScanlines);

/// Writes pixels flat, four bytes each.
/// @param pfPixels  nPixels x 3 floats, interleaved R, G, B
int WriteRgbePixels(FILE* pFile, const float* pfPixels, std::int64_t nPixels);

/// Writes one plane of a scanline as run-length packets.
/// @param pData  nCount bytes: one channel's mantissas, or the exponents
///
/// A count byte above 128 repeats the next byte (count - 128) times, one of 1 to 128 announces that many
/// literal bytes.
int WriteRgbePlane(FILE* pFile, const unsigned char* pData, std::int32_t nCount);

/// Converts one pixel.
/// @param pRgbe  receives four bytes: three mantissas and the exponent
///
/// The largest channel sets the exponent; below 1e-32 all four bytes are 0. Mantissas are truncated. A
/// negative channel leaves the low byte of its truncated mantissa. A channel that is no number counts as 0.
/// Infinity becomes the largest RGBE value, beside which the finite channels vanish.
void FloatToRgbe(unsigned char* pRgbe, float fRed, float fGreen, float fBlue);
