// In-place conversions between the layouts of a pixel record. None of them allocates.
#pragma once

#include "image/RawImage.h"

#include <cstdint>

/// Puts an opaque sample (255, 65535 or 1.0) in front of the three of each pixel: R G B becomes A R G B.
/// The block must hold the four samples of all pixels, and rows must not be further apart than that.
/// Records with four samples are left alone. Of any other depth only dataSize is set anew.
void ThreeToFourBpp(RawImage& raw);

/// A R G B becomes R G B A in each of nCount pixels of 32, 64 or 128 bits; other depths are left alone.
void ArgbToRgbaRow(unsigned char* pRow, std::int32_t nCount, std::int32_t nBitsPerPixel);

/// ArgbToRgbaRow on each row.
void ArgbToRgbaRows(RawImage& raw);

/// Samples v of 8 bits become v x 256 of 16 bits, so 255 becomes 65280. The block must hold twice the
/// samples. Records above 32 bits a pixel are left alone.
void EightToSixteenBit(RawImage& raw);

/// Each 16 bits become their high byte. Records below 48 bits a pixel are left alone; floating point samples
/// count as two values of 16 bits each.
void SixteenToEightBit(RawImage& raw);
