// From linear channel values to bytes: gamma, cap, truncation. Each value stands for itself, so the functions
// serve rows of interleaved pixels and whole planes alike.
#pragma once

#include "engine/ByteTable.h"

#include <optional>
#include <span>

/// The transfer curve of ITU-R BT.709, bent to other gammas: a line through 0, then a power.
struct GammaCurve {
    /// @param fGamma  display gamma, above 0.2. 2.2 gives the curve of the recommendation
    explicit GammaCurve(float fGamma);

    float Apply(float fValue) const;

    float fExponent;
    float fStart = 0.018F; ///< the line's end
    float fSlope = 4.5F;   ///< the line's slope
};

/// x^e, without the library's pow where e is 0, 1, 2 or 3.
float FastPow(float fX, float fExponent);

void GammaCorrect(std::span<float> vfValues, float fGamma);

/// Cuts what is above 0.98. There is no lower limit.
void ClampTop(std::span<float> vfValues);

/// Truncates each value times 255 to a byte. Below 0 and NaN give 0, above 1 gives 255.
/// @param pBytes  receives one byte per value
void FloatToBytes(std::span<const float> vfValues, unsigned char* pBytes);

/// The three steps in one: by a table where kernels for it are at hand and the gamma allows it.
class DisplayBytes {
public:
    /// @param fGamma  as for GammaCurve
    explicit DisplayBytes(float fGamma);

    bool HasTable() const { return m_table.has_value(); }

    /// @param vfValues  may come out changed   @param pBytes  receives one byte per value
    void Convert(std::span<float> vfValues, unsigned char* pBytes) const;

private:
    float m_fGamma;
    std::optional<ByteTable> m_table;
};
