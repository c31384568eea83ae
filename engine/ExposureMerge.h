// The arithmetic of the merge: exposures, confidence in pixel values, and one row.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

/// Appends the linear exposure of each image: E = (t * 100) / (N * N * 12.07488), rounded to 32 bits at each
/// step, for the shutter time t in seconds and the f-number N. Longer times and wider apertures give more.
/// @return true
bool ExposureList(const std::vector<float>& vfShutters, const std::vector<float>& vfStops,
                  std::vector<float>& vfExposures);

/// Appends the 256 confidences in the 8-bit values: a triangle with its peak in the middle and a dead zone
/// at both ends, where a reading says little about radiance.
/// @return true
bool BuildWeightTable(std::vector<float>& vfWeights);

/// Finds the lowest and the highest value whose weight is above 0. @return true
bool FindWeightRange(const std::vector<float>& vfWeights, std::int32_t* pnLow, std::int32_t* pnHigh);

/// Merges one row by itself; the arithmetic, and what serves many rows, is in MergeRow.h.
///
/// @param vRows        one row per image, 4 bytes a pixel: ignored, red, green, blue
/// @param nChannels    3
/// @param vfExposures  one E per image
/// @param vafCurves    three curves of 256 floats: red, green, blue
/// @param nLow,nHigh   the range of FindWeightRange
/// @return nWidth x 3 floats, interleaved R, G, B
std::unique_ptr<float[]> MergeRow(const std::vector<const unsigned char*>& vRows, std::int32_t nWidth,
                                  std::int32_t nChannels, const std::vector<float>& vfExposures,
                                  const std::vector<float*>& vafCurves, const std::vector<float>& vfWeights,
                                  std::int32_t nLow, std::int32_t nHigh);
