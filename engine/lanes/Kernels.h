// The engine's kernels, one set for each instruction set.
//
// Each kernel does as many pixels as its vectors cover, from the first on, and returns their number; the rest
// is for the plain twin. All give the bits of the plain twin, for all values.
#pragma once

#include <cstddef>
#include <span>

struct ByteCells;
struct MergeTables;
struct ToneCurve;

namespace LS::Lanes {

struct EngineKernels {
    /// One row of all images. See MergeRow.h.
    std::size_t (*MergeRow)(const MergeTables& tables, std::span<const unsigned char* const> vpRows,
                            std::size_t nWidth, float* pfRow);
    /// Planes of R, G, B to Y, x, y, in place, with the statistics of FoldLuminance.
    std::size_t (*PlanesToYxy)(float* pfFirst, float* pfSecond, float* pfThird, std::size_t nPixels,
                               float* pfSumLog, float* pfMax);
    /// The same for interleaved pixels.
    std::size_t (*RowToYxy)(float* pfPixels, std::size_t nPixels, float* pfSumLog, float* pfMax);
    /// Compresses a band of TONE_BLOCK rows in place, and returns the number of its columns that are done.
    std::size_t (*CompressBand)(float* pfBand, std::size_t nWidth, const ToneCurve& curve);
    /// Planes of Y, x, y to R, G, B, in place.
    std::size_t (*PlanesToRGB)(float* pfFirst, float* pfSecond, float* pfThird, std::size_t nPixels);
    /// A row of Y and one of interleaved x, y to interleaved R, G, B.
    std::size_t (*RowToRGB)(const float* pfY, const float* pfXY, std::size_t nPixels, float* pfRGB);
    /// Channel values to bytes.
    std::size_t (*ToBytes)(const float* pfValues, std::size_t nValues, const ByteCells& cells,
                           unsigned char* pBytes);
};

/// The set for the best instructions at hand, or null where the plain twins are all there is.
const EngineKernels* Kernels();

// What kernels leave to the library's functions.
float SumWithLog(float fSum, float fY);
float SharedLog(float fCentre, const ToneCurve& curve);
float CompressedInSmoothBlock(float fValue, float fShared, const ToneCurve& curve);
float CompressedInRoughBlock(float fValue, const ToneCurve& curve);

} // namespace LS::Lanes
