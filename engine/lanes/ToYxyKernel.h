// R, G, B to luminance and chromaticity, with the statistics of luminance. The plain twin is in Colour.cpp.
#pragma once

#include "engine/lanes/Elementary.h"
#include "engine/lanes/Kernels.h"

namespace LS::Lanes {

template <class L> class ToYxyKernel {
public:
    /// See ToneKernels::ToYxy; Pixels is a source and target of pixels.
    template <class Pixels>
    static std::size_t Run(Pixels pixels, std::size_t nPixels, float* pfSumLog, float* pfMax)
    {
        const std::size_t nVectors = nPixels / COUNT;
        for (std::size_t nFirst = 0; nFirst < nVectors; nFirst += STRIP) {
            Strip strip;
            strip.nVectors = nVectors - nFirst < STRIP ? nVectors - nFirst : STRIP;
            Convert(pixels, strip, pfMax);
            *pfSumLog = Folded(*pfSumLog, strip);
        }
        return nVectors * COUNT;
    }

private:
    using Doubles = typename L::Doubles;

    static constexpr std::size_t STRIP = 64; ///< vectors whose logarithms wait to be added up in order

    struct Strip {
        std::size_t nVectors;
        float afY[STRIP * COUNT];
        double adLog[STRIP * COUNT];
    };

    LS_LANES static Floats Weighted(Doubles dR, Doubles dG, Doubles dB, double dOfR, double dOfG, double dOfB)
    {
        return L::Rounded(L::Each(dOfR) * dR + L::Each(dOfG) * dG + L::Each(dOfB) * dB);
    }

    template <class Pixels> LS_LANES static void Convert(Pixels& pixels, Strip& strip, float* pfMax)
    {
        Floats fMax = Each(*pfMax);
        for (std::size_t i = 0; i < strip.nVectors * COUNT; i += COUNT) {
            const Triple rgb = pixels.Read();
            const Doubles dR = L::Widened(rgb.a), dG = L::Widened(rgb.b), dB = L::Widened(rgb.c);
            const Floats fX = Weighted(dR, dG, dB, 0.5141364, 0.3238786, 0.16036376);
            Floats fY = Weighted(dR, dG, dB, 0.265068, 0.67023426, 0.06409157);
            const Floats fZ = Weighted(dR, dG, dB, 0.0241188, 0.1228178, 0.8444266);
            const Floats fSum = fX + fY + fZ;
            const FloatMask visible = fSum > Each(0.0F);
            const Floats fx = OrZero(visible, fX / fSum), fy = OrZero(visible, fY / fSum);
            fY = OrZero(visible, fY);
            pixels.Write({fY, fx, fy});
            fMax = Max(fY, fMax);
            Store(strip.afY + i, fY);
            L::Store(strip.adLog + i, Log<L>(L::Widened(fY) + L::Each(0.000023)));
        }
        float afMax[COUNT];
        Store(afMax, fMax);
        for (const float f : afMax)
            *pfMax = *pfMax < f ? f : *pfMax;
    }

    /// The sum is a float after each pixel, so the pixels go one by one.
    LS_LANES static float Folded(float fSum, const Strip& strip)
    {
        for (std::size_t i = 0; i < strip.nVectors * COUNT; ++i) {
            const float fLow = static_cast<float>(fSum + strip.adLog[i] * (1 - ROUNDING_MARGIN));
            const float fHigh = static_cast<float>(fSum + strip.adLog[i] * (1 + ROUNDING_MARGIN));
            fSum = fLow == fHigh ? fLow : SumWithLog(fSum, strip.afY[i]);
        }
        return fSum;
    }
};

} // namespace LS::Lanes
