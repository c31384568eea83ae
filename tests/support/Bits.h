// Compares floats bit for bit.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <span>

namespace LS::Tests {

/// Any two results that are no number count as the same: which of two such operands survives a sum is the
/// processor's affair.
inline bool SameBits(float a, float b)
{
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b) ||
           (std::isnan(a) && std::isnan(b));
}

/// Fails fatally, with the first float that differs.
inline void ExpectSameBits(std::span<const float> expected, std::span<const float> actual)
{
    ASSERT_EQ(expected.size(), actual.size());
    const auto fault = std::ranges::mismatch(expected, actual, SameBits);
    ASSERT_TRUE(fault.in1 == expected.end()) << "float " << fault.in1 - expected.begin() << ": "
                                             << std::hexfloat << *fault.in2 << " instead of " << *fault.in1;
}

} // namespace LS::Tests
