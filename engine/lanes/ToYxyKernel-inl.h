// R, G, B to luminance and chromaticity, with the statistics of luminance. The plain twin is in Colour.cpp.

// Once per target.
#if defined(LS_ENGINE_LANES_TOYXYKERNEL_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef LS_ENGINE_LANES_TOYXYKERNEL_INL_H
#undef LS_ENGINE_LANES_TOYXYKERNEL_INL_H
#else
#define LS_ENGINE_LANES_TOYXYKERNEL_INL_H
#endif

#include "engine/lanes/Elementary-inl.h"
#include "engine/lanes/Kernels.h"

#if LS_HAS_LANES
HWY_BEFORE_NAMESPACE();
namespace LS::Lanes::HWY_NAMESPACE {

class ToYxyKernel {
public:
    /// See EngineKernels::ToYxy; Pixels is a source and target of pixels.
    template <class Pixels>
    static std::size_t Run(Pixels pixels, std::size_t nPixels, float* pfSumLog, float* pfMax)
    {
        const std::size_t nWhole = nPixels - nPixels % COUNT;
        Floats fMax = Each(*pfMax);
        for (std::size_t nFirst = 0; nFirst < nWhole; nFirst += STRIP) {
            Strip strip;
            strip.nPixels = nWhole - nFirst < STRIP ? nWhole - nFirst : STRIP;
            for (std::size_t i = 0; i < strip.nPixels; i += COUNT) {
                const Triple yxy = Converted(pixels.Read());
                pixels.Write(yxy);
                fMax = hn::IfThenElse(yxy.a > fMax, yxy.a, fMax);
                Store(strip.afY + i, yxy.a);
                StoreDoubles(strip.adLog + i, Log(Widened(yxy.a) + Each(0.000023)));
            }
            if (!FoldAtOnce(strip, pfSumLog))
                FoldOneByOne(strip, pfSumLog);
        }
        float afMax[COUNT];
        Store(afMax, fMax);
        for (const float f : afMax)
            *pfMax = *pfMax < f ? f : *pfMax;
        return nWhole;
    }

private:
    static constexpr std::size_t STRIP = 64; ///< pixels whose logarithms are added up together

    struct Strip {
        std::size_t nPixels;
        float afY[STRIP];
        double adLog[STRIP];
    };

    HWY_INLINE static Floats Weighted(Doubles dR, Doubles dG, Doubles dB, double dOfR, double dOfG,
                                      double dOfB)
    {
        return Rounded(Each(dOfR) * dR + Each(dOfG) * dG + Each(dOfB) * dB);
    }

    HWY_INLINE static Triple Converted(Triple rgb)
    {
        const Doubles dR = Widened(rgb.a), dG = Widened(rgb.b), dB = Widened(rgb.c);
        const Floats fX = Weighted(dR, dG, dB, 0.5141364, 0.3238786, 0.16036376);
        const Floats fY = Weighted(dR, dG, dB, 0.265068, 0.67023426, 0.06409157);
        const Floats fZ = Weighted(dR, dG, dB, 0.0241188, 0.1228178, 0.8444266);
        const Floats fSum = fX + fY + fZ;
        const FloatMask visible = fSum > Each(0.0F);
        return {hn::IfThenElseZero(visible, fY), hn::IfThenElseZero(visible, fX / fSum),
                hn::IfThenElseZero(visible, fY / fSum)};
    }

    /// The sum is a float after each pixel. While it stays between two neighbouring powers of two, it is a
    /// multiple of one unit in the last place, and what a logarithm adds to it after rounding is the multiple
    /// of this unit that is next to the logarithm: so the sum needn't be known, and the order doesn't matter.
    /// @return false, with the sum as it was, where that isn't certain
    HWY_INLINE static bool FoldAtOnce(const Strip& strip, float* pfSum)
    {
        const std::uint64_t nExponent = __builtin_bit_cast(std::uint32_t, *pfSum) >> 23 & 0xFF;
        const double dPower = __builtin_bit_cast(double, (nExponent + 1023 - 127) << 52);
        const double dUnit = dPower * 0x1p-23;
        const Doubles dRounder = Each(dUnit * 0x1.8p52); // leaves no digits below the unit
        // No logarithm of a float exceeds 100; and the plain sum is rounded to a double before it is to a
        // float.
        const Doubles dMargin = Each(100 * ROUNDING_MARGIN + dUnit * 0x1p-28);
        Doubles dTotal = Each(0.0), dPath = dTotal;
        for (std::size_t i = 0; i < strip.nPixels; i += COUNT) {
            const Doubles dLog = LoadDoubles(strip.adLog + i);
            const Doubles dLow = dLog - dMargin + dRounder - dRounder;
            const Doubles dHigh = dLog + dMargin + dRounder - dRounder;
            dTotal = dTotal + dLow;
            dPath = dPath + Choose(dHigh <= dLow, Magnitude(dLow), Each(__builtin_nan("")));
        }
        const double dAround = __builtin_fabs(static_cast<double>(*pfSum)), dReach = Sum(dPath);
        if (!(dAround - dReach >= dPower + dUnit && dAround + dReach < 2 * dPower)) // NaN, too
            return false;
        *pfSum = static_cast<float>(*pfSum + Sum(dTotal));
        return true;
    }

    HWY_INLINE static double Sum(Doubles dValues)
    {
        double ad[COUNT];
        StoreDoubles(ad, dValues);
        return ad[0] + ad[1] + ad[2] + ad[3];
    }

    HWY_NOINLINE static void FoldOneByOne(const Strip& strip, float* pfSum)
    {
        float fSum = *pfSum;
        for (std::size_t i = 0; i < strip.nPixels; ++i) {
            const auto fLow = static_cast<float>(fSum + strip.adLog[i] * (1 - ROUNDING_MARGIN));
            const auto fHigh = static_cast<float>(fSum + strip.adLog[i] * (1 + ROUNDING_MARGIN));
            fSum = fLow == fHigh ? fLow : SumWithLog(fSum, strip.afY[i]);
        }
        *pfSum = fSum;
    }
};

} // namespace LS::Lanes::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif // LS_HAS_LANES
#endif // once per target
