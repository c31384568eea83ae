// One row of the merge: the definition, and a kernel that gives the same bits.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// What the arithmetic of a merge looks up, in the form in which it reads it: made once, used for every row.
struct MergeTables {
    /// Curve value and weight of an 8-bit value. The curve value stands at its channel's place, zeros at
    /// those of the others, so that three entries of a pixel add up to its three curve values and sum of
    /// weights.
    struct alignas(16) Entry {
        std::array<float, 4> f{};
    };
    using Channel = std::array<Entry, 256>;
    static constexpr std::size_t WEIGHT = 3;     ///< the place behind those of red, green and blue
    static constexpr float NO_WEIGHT = 0.00001F; ///< a sum of weights below it: no reading was usable

    /// @param vafCurves   three curves of 256 floats: red, green, blue
    /// @param vfWeights   256 confidences
    /// @param nLow,nHigh  the lowest and the highest value whose weight is above 0
    MergeTables(const std::vector<float>& vfExposures, const std::vector<float*>& vafCurves,
                const std::vector<float>& vfWeights, std::int32_t nLow, std::int32_t nHigh);

    std::array<Channel, 3> channels;
    std::vector<float> vfExposures; ///< one per image
    std::int32_t nLow, nHigh;
};

/// Merges one row of all images: the weighted mean of curve(z) / E, with a fallback for pixels that no image
/// shows usably. Every product, quotient and sum is rounded to 32 bits, left to right, in the order of the
/// images, so all ways to it give the same bits.
/// @param vpRows  one row per exposure, 4 bytes a pixel: ignored, red, green, blue
/// @param pfRow   receives nWidth x 3 floats, interleaved R, G, B
void MergeRow(const MergeTables& tables, std::span<const unsigned char* const> vpRows, std::int32_t nWidth,
              float* pfRow);

namespace reference {
/// The definition, for the pixels from nFirst up to nEnd. The kernels have its bits.
void MergePixels(const MergeTables& tables, std::span<const unsigned char* const> vpRows, std::size_t nFirst,
                 std::size_t nEnd, float* pfRow);
} // namespace reference
