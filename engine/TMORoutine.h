// Tone mapping: float radiance to 8-bit R, G, B, on three roads with the same arithmetic.
//
//   ToneMapScaledImage    pixels in memory: the preview. Three float planes
//   ToneMapCacheInMemory  float cache file, read whole. Three float planes of the full image
//   ToneMapCacheByRows    float cache file, by rows. One float plane, the output, and "xydata.tmp" on disk
//
// The roads differ only in where the search for the brightest luminance starts (LuminanceCompression.h). They
// leave their source as it is. Null means failure or cancel; a failure is in the log, or leaves as an
// exception of memory shortage or of an image whose mean luminance is 0. The workspace's cancel flag is
// polled after each row or band of three rows, and between stages; nothing clears it here.
//
// Exposures are in stops, gammas those of the display and above 0.2. pProgress is null or receives 0 to 100.
#pragma once

#include "Util/PixelBuffer.h"

#include <cstdint>
#include <memory>
#include <string>

class ProgbarSetter;

/// @param pfPixels  nWidth x nHeight x 3 floats, interleaved R, G, B; not null (asserted, as are the sizes)
/// @return nWidth x nHeight x 3 bytes, interleaved R, G, B, top row first; or null
LS::Util::PixelBuffer ToneMapScaledImage(const float* pfPixels, std::int32_t nWidth, std::int32_t nHeight,
                                         float fExposure, float fGamma, ProgbarSetter* pProgress);

/// @param sFile  a float cache file of nWidth x nHeight x 3 floats, interleaved R, G, B. A shorter one fails
/// @return as ToneMapScaledImage
LS::Util::PixelBuffer ToneMapCacheInMemory(const std::wstring& sFile, std::int32_t nWidth,
                                           std::int32_t nHeight, float fExposure, float fGamma,
                                           ProgbarSetter* pProgress);

/// Three passes: SplitLuminance, CompressLuminance, RecombineRows. Success deletes "xydata.tmp" from the
/// cache folder; after a failure it stays there until the next run overwrites it or the folder is emptied.
/// @param sFile  as for ToneMapCacheInMemory
/// @return as ToneMapScaledImage
LS::Util::PixelBuffer ToneMapCacheByRows(const std::wstring& sFile, std::int32_t nWidth, std::int32_t nHeight,
                                         float fExposure, float fGamma, ProgbarSetter* pProgress);

/// First pass: takes a float cache file apart into luminance and chromaticity.
/// @param pfLogAverage  receives the mean logarithm of luminance
/// @param sXYFile       receives nWidth x nHeight x 2 floats, x and y, without header
/// @param pfMax         receives the brightest luminance, 1.0 if all lie below
/// @return nWidth x nHeight floats of luminance, or null
LS::Util::LargeBuffer<float> SplitLuminance(float* pfLogAverage, const std::wstring& sFile,
                                            const std::wstring& sXYFile, std::int32_t nWidth,
                                            std::int32_t nHeight, float* pfMax, ProgbarSetter* pProgress);

/// Second pass: compresses the luminance in place.
/// @return false after a cancel
bool CompressLuminance(float* pYChan, std::int32_t nWidth, std::int32_t nHeight, float fExposure, float fMax,
                       float fLogAverage, float fBias, ProgbarSetter* pProgress);

/// Third pass: compressed luminance and chromaticity to bytes.
/// @return as ToneMapScaledImage
LS::Util::PixelBuffer RecombineRows(ProgbarSetter* pProgress, const float* pYChan,
                                    const std::wstring& sXYFile, std::int32_t nWidth, std::int32_t nHeight,
                                    float fGamma);

/// One row of the third pass.
/// @param pYChan  nWidth floats   @param pxyChan  nWidth x 2 floats, x and y
/// @return nWidth x 3 bytes
std::unique_ptr<unsigned char[]> YxyRowToBytes(const float* pYChan, const float* pxyChan, std::int32_t nWidth,
                                               float fGamma);
