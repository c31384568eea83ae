// Logarithm and power on lanes: not the library's bits, but close enough to tell where they round to.
//
// The tone mapper's logarithms are doubles that end up rounded to floats. An approximation whose error is
// known gives the same float as the library wherever both ends of its error interval round to that float.
// RoundsAlike tells these lanes; the few others are for the library itself. So a fast road has the plain
// road's bits whatever the library's last bits are.
#pragma once

#include "engine/lanes/Lanes.h"

#include <cstdint>

namespace LS::Lanes {

/// Bound of the relative error of Log and BiasedLog: 2^-43. bench/engine/EveryFloat.cpp measures it.
constexpr double ELEMENTARY_ERROR = 1.0 / 8796093022208.0;

/// The interval that RoundsAlike looks at: 2^-40, for a quotient of two such values and the library's own
/// errors.
constexpr double ROUNDING_MARGIN = 8 * ELEMENTARY_ERROR;

constexpr double LOG_2 = 0.69314718055994530942;

/// Lanes in which the exact result rounds to the same float as the approximation. False for NaN.
template <class L> LS_LANES FloatMask RoundsAlike(typename L::Doubles dApproximation)
{
    return L::Rounded(dApproximation * L::Each(1 - ROUNDING_MARGIN)) ==
           L::Rounded(dApproximation * L::Each(1 + ROUNDING_MARGIN));
}

/// a[0] + a[1] x + ... + a[7] x^7, by Estrin's scheme: its short chains keep the processor busier than
/// Horner's.
template <class L> LS_LANES typename L::Doubles Series(typename L::Doubles dX, const double (&a)[8])
{
    using Doubles = typename L::Doubles;
    const auto pair = [&](std::size_t i) __attribute__((always_inline))
    {
        return L::Each(a[i]) + L::Each(a[i + 1]) * dX;
    };
    const Doubles dX2 = dX * dX;
    return (pair(0) + pair(2) * dX2) + (pair(4) + pair(6) * dX2) * (dX2 * dX2);
}

template <class L> LS_LANES typename L::Doubles FromBits(std::uint64_t nBits)
{
    return L::Each(__builtin_bit_cast(double, nBits));
}

/// Natural logarithm. NaN where x isn't a positive normal number.
///
/// x = m 2^e with m around 1, and log(m) = 2 atanh(s) with s = (m - 1) / (m + 1), |s| < 0.172. The series
/// ends with s^17 / 17; the rest is below 2^-49 of the sum.
template <class L> LS_LANES typename L::Doubles Log(typename L::Doubles dX)
{
    using Doubles = typename L::Doubles;
    constexpr std::uint64_t ONE = 0x3FF0000000000000, ROOT_OF_HALF = 0x3FE6A09E667F3BCD;
    // The exponent counts from the root of one half, so that m lies between it and the root of two.
    const Doubles dShifted = L::AddBits(dX, FromBits<L>(ONE - ROOT_OF_HALF));
    const Doubles dBiased = L::template ShiftBitsRight<52>(dShifted) | L::Each(0x1p52);
    const Doubles dExponent = dBiased - L::Each(0x1p52 + 1023);
    const Doubles dPower = L::SubtractBits(dShifted & FromBits<L>(0x7FF0000000000000), FromBits<L>(ONE));
    const Doubles dMantissa = L::SubtractBits(dX, dPower);

    const Doubles dF = dMantissa - L::Each(1);
    const Doubles dS = dF / (dF + L::Each(2));
    const Doubles dZ = dS * dS;
    constexpr double ATANH[] = {1.0 / 3, 1.0 / 5, 1.0 / 7, 1.0 / 9, 1.0 / 11, 1.0 / 13, 1.0 / 15, 1.0 / 17};
    const Doubles dAtanh = dS + dS * (dZ * Series<L>(dZ, ATANH));
    const Doubles dLog = dExponent * L::Each(LOG_2) + (dAtanh + dAtanh);

    const Doubles dValid = (L::Each(0x1p-1022) <= dX) & (dX <= L::Each(0x1.fffffffffffffp1023));
    return L::Choose(dValid, dLog, L::Each(__builtin_nan("")));
}

/// log(2 + 8 x^p) for x from 0. NaN where x isn't such, or its power is out of bounds.
template <class L> LS_LANES typename L::Doubles BiasedLog(Floats fX, float fPower)
{
    using Doubles = typename L::Doubles;
    // x^p = 2^(k + r) with an integer k and |r| <= 1/2; adding the rounder leaves k in the low bits.
    const Doubles dRounder = L::Each(0x1.8p52);
    const Doubles dExponent = Log<L>(L::Widened(fX)) * L::Each(fPower / LOG_2);
    const Doubles dWhole = dExponent + dRounder;
    // exp(y) is the eighth power of exp(y / 8), whose series leaves a rest below 2^-51.
    const Doubles dEighth = (dExponent - (dWhole - dRounder)) * L::Each(LOG_2 / 8);
    constexpr double EXP[] = {1, 1, 1.0 / 2, 1.0 / 6, 1.0 / 24, 1.0 / 120, 1.0 / 720, 1.0 / 5040};
    Doubles dExp = Series<L>(dEighth, EXP);
    dExp = dExp * dExp;
    dExp = dExp * dExp;
    dExp = dExp * dExp;
    Doubles dPower = L::AddBits(dExp, L::template ShiftBitsLeft<52>(dWhole));

    // A larger exponent would carry the logarithm's error beyond the bound.
    const Doubles dValid = (L::Each(-64) <= dExponent) & (dExponent <= L::Each(64));
    dPower = L::Choose(dValid, dPower, L::Each(__builtin_nan("")));
    if (fPower > 0)
        dPower = L::Choose(L::Widened(fX == Each(0.0F)), L::Each(0), dPower); // black
    return Log<L>(L::Each(2) + L::Each(8) * dPower);
}

} // namespace LS::Lanes
