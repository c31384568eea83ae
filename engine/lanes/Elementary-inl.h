// Logarithm and power on lanes: not the library's bits, but close enough to tell where they round to.
//
// The tone mapper's logarithms are doubles that end up rounded to floats. An approximation whose error is
// known gives the same float as the library wherever both ends of its error interval round to that float.
// RoundsAlike finds these lanes; the few others are for the library itself. So a kernel has the bits of its
// plain twin whatever the library's last bits are.

// Once per target.
#if defined(LS_ENGINE_LANES_ELEMENTARY_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef LS_ENGINE_LANES_ELEMENTARY_INL_H
#undef LS_ENGINE_LANES_ELEMENTARY_INL_H
#else
#define LS_ENGINE_LANES_ELEMENTARY_INL_H
#endif

#include "Util/Lanes-inl.h"
#include "engine/lanes/Margins.h"

#include <cstdint>

#if LS_HAS_LANES
HWY_BEFORE_NAMESPACE();
namespace LS::Lanes::HWY_NAMESPACE {

constexpr double LOG_2 = 0.69314718055994530942;

/// Lanes in which the exact result rounds to the same float as the approximation. False for NaN.
HWY_INLINE FloatMask RoundsAlike(const Doubles& dApproximation)
{
    return Rounded(dApproximation * Each(1 - ROUNDING_MARGIN)) ==
           Rounded(dApproximation * Each(1 + ROUNDING_MARGIN));
}

/// a[0] + a[1] x + ... + a[7] x^7, by Estrin's scheme: its short chains keep the processor busier than
/// Horner's.
HWY_INLINE Doubles Series(const Doubles& dX, const double (&a)[8])
{
    const Doubles d01 = Each(a[0]) + Each(a[1]) * dX, d23 = Each(a[2]) + Each(a[3]) * dX;
    const Doubles d45 = Each(a[4]) + Each(a[5]) * dX, d67 = Each(a[6]) + Each(a[7]) * dX;
    const Doubles dX2 = dX * dX;
    return (d01 + d23 * dX2) + (d45 + d67 * dX2) * (dX2 * dX2);
}

/// Natural logarithm. NaN where x isn't a positive normal number.
///
/// x = m 2^e with m around 1, and log(m) = 2 atanh(s) with s = (m - 1) / (m + 1), |s| < 0.172. The series
/// ends with s^17 / 17; the rest is below 2^-49 of the sum.
HWY_INLINE Doubles Log(const Doubles& dX)
{
    constexpr std::uint64_t ONE = 0x3FF0000000000000, ROOT_OF_HALF = 0x3FE6A09E667F3BCD;
    // The exponent counts from the root of one half, so that m lies between it and the root of two.
    const Doubles dShifted = AddBits(dX, FromBits(ONE - ROOT_OF_HALF));
    const Doubles dBiased = OrBits(ShiftBitsRight<52>(dShifted), Each(0x1p52));
    const Doubles dExponent = dBiased - Each(0x1p52 + 1023);
    const Doubles dPower = SubtractBits(AndBits(dShifted, FromBits(0x7FF0000000000000)), FromBits(ONE));
    const Doubles dMantissa = SubtractBits(dX, dPower);

    const Doubles dF = dMantissa - Each(1.0);
    const Doubles dS = dF / (dF + Each(2.0));
    const Doubles dZ = dS * dS;
    constexpr double ATANH[] = {1.0 / 3, 1.0 / 5, 1.0 / 7, 1.0 / 9, 1.0 / 11, 1.0 / 13, 1.0 / 15, 1.0 / 17};
    const Doubles dAtanh = dS + dS * (dZ * Series(dZ, ATANH));
    const Doubles dLog = dExponent * Each(LOG_2) + (dAtanh + dAtanh);

    const DoubleMask valid = (Each(0x1p-1022) <= dX) & (dX <= Each(0x1.fffffffffffffp1023));
    return Choose(valid, dLog, Each(__builtin_nan("")));
}

/// log(2 + 8 x^p) for x from 0. NaN where x isn't such, or its power is out of bounds.
HWY_INLINE Doubles BiasedLog(Floats fX, float fPower)
{
    // x^p = 2^(k + r) with an integer k and |r| <= 1/2; adding the rounder leaves k in the low bits.
    const Doubles dRounder = Each(0x1.8p52);
    const Doubles dExponent = Log(Widened(fX)) * Each(fPower / LOG_2);
    const Doubles dWhole = dExponent + dRounder;
    // exp(y) is the eighth power of exp(y / 8), whose series leaves a rest below 2^-51.
    const Doubles dEighth = (dExponent - (dWhole - dRounder)) * Each(LOG_2 / 8);
    constexpr double EXP[] = {1, 1, 1.0 / 2, 1.0 / 6, 1.0 / 24, 1.0 / 120, 1.0 / 720, 1.0 / 5040};
    Doubles dExp = Series(dEighth, EXP);
    dExp = dExp * dExp;
    dExp = dExp * dExp;
    dExp = dExp * dExp;
    Doubles dPower = AddBits(dExp, ShiftBitsLeft<52>(dWhole));

    // A larger exponent would carry the logarithm's error beyond the bound.
    const DoubleMask valid = (Each(-64.0) <= dExponent) & (dExponent <= Each(64.0));
    dPower = Choose(valid, dPower, Each(__builtin_nan("")));
    if (fPower > 0)
        dPower = Choose(Widened(fX == Each(0.0F)), Each(0.0), dPower); // black
    return Log(Each(2.0) + Each(8.0) * dPower);
}

} // namespace LS::Lanes::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif // LS_HAS_LANES
#endif // once per target
