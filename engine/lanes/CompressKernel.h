// One whole band of the compression of luminance, four blocks at a time. The plain twin is in
// LuminanceCompression.cpp.
#pragma once

#include "engine/LuminanceCompression.h"
#include "engine/lanes/Elementary.h"
#include "engine/lanes/Kernels.h"

namespace LS::Lanes {

template <class L> class CompressKernel {
public:
    /// See ToneKernels::CompressBand.
    static std::size_t Run(float* pfBand, std::size_t nWidth, const ToneCurve& curve)
    {
        const std::size_t nWhole = nWidth - nWidth % STEP;
        for (std::size_t nFirst = 0; nFirst < nWhole; nFirst += STRIP)
            CompressStrip(pfBand + nFirst, nWidth, nWhole - nFirst < STRIP ? nWhole - nFirst : STRIP, curve);
        return nWhole;
    }

private:
    using Doubles = typename L::Doubles;

    static constexpr std::size_t STEP = COUNT * TONE_BLOCK; ///< columns of as many blocks as there are lanes
    static constexpr std::size_t STRIP = 32 * STEP;

    /// What the pixels of a block share.
    struct Shared {
        FloatMask smooth;
        Floats fLog; ///< the bias term where the block is smooth
    };

    /// Two passes, so that the long calculation for some blocks and that for others' pixels don't wait for
    /// each other.
    LS_LANES static void CompressStrip(float* pfFirst, std::size_t nStride, std::size_t nColumns,
                                       const ToneCurve& curve)
    {
        Shared blocks[STRIP / STEP];
        for (std::size_t x = 0; x < nColumns; x += STEP)
            blocks[x / STEP] = Normalise(pfFirst + x, nStride, curve);
        for (std::size_t x = 0; x < nColumns; x += STEP) {
            // Lanes of blocks 0 to 3, spread to the columns that they cover.
            const Shared& shared = blocks[x / STEP];
            const Shared first = Spread<0, 0, 0, 1>(shared), second = Spread<1, 1, 2, 2>(shared),
                         third = Spread<2, 3, 3, 3>(shared);
            for (std::size_t y = 0; y < TONE_BLOCK; ++y) {
                float* pfRow = pfFirst + y * nStride + x;
                Compress(pfRow, first, curve);
                Compress(pfRow + COUNT, second, curve);
                Compress(pfRow + 2 * COUNT, third, curve);
            }
        }
    }

    LS_LANES static Floats Normalised(Floats fY, const ToneCurve& curve)
    {
        return fY / Each(curve.fAdaptation) * Each(curve.fScale);
    }

    template <int A, int B, int C, int D> LS_LANES static Shared Spread(const Shared& shared)
    {
        const Floats fMask = {shared.smooth.v};
        return {{Shuffle<A, B, C, D>(fMask, fMask).v}, Shuffle<A, B, C, D>(shared.fLog, shared.fLog)};
    }

    /// Normalises four blocks in place.
    LS_LANES static Shared Normalise(float* pfFirst, std::size_t nStride, const ToneCurve& curve)
    {
        Floats fTotal = Each(0.0F), fFirst = fTotal, fCentre = fTotal;
        for (std::size_t y = 0; y < TONE_BLOCK; ++y) {
            const Triple values = LoadTriple(pfFirst + y * nStride);
            const Triple row = {Normalised(values.a, curve), Normalised(values.b, curve),
                                Normalised(values.c, curve)};
            StoreTriple(pfFirst + y * nStride, row);
            const Triple columns = Deinterleaved(row);
            fTotal = fTotal + columns.a + columns.b + columns.c;
            if (y == 0)
                fFirst = columns.a;
            if (y == 1)
                fCentre = columns.b;
        }
        const Floats fContrast = L::Rounded(L::Widened(fTotal) / L::Each(9) - L::Widened(fFirst));
        const FloatMask rough = (fContrast <= Each(-1.0F)) | (fContrast >= Each(1.0F));

        const Doubles dLog = BiasedLog<L>(fCentre / Each(curve.fRelativeMax), curve.fBiasPower);
        const FloatMask known = RoundsAlike<L>(dLog) | rough;
        const Floats fLog = L::Rounded(dLog);
        return {Not(rough), Bits(known) == ALL ? fLog : WithPlainLogs(fLog, known, fCentre, curve)};
    }

    LS_LANES static void Compress(float* pfValues, const Shared& shared, const ToneCurve& curve)
    {
        const Floats fValue = Load(pfValues);
        const Doubles dValue = L::Widened(fValue);
        const FloatMask below1 = fValue < Each(1.0F), below2 = fValue < Each(2.0F);
        const Doubles dBelow1 = L::Widened(below1);
        // v (a v + 6) / (b v + c): both rational functions have this form.
        const Doubles dA = L::Choose(dBelow1, L::Each(1), L::Each(0.7662));
        const Doubles dB = L::Choose(dBelow1, L::Each(4), L::Each(3.7658));
        const Doubles dC = L::Choose(dBelow1, L::Each(6), L::Each(5.9897));
        Doubles dNumerator = dValue * (dA * dValue + L::Each(6));
        Doubles dDenominator = dB * dValue + dC;
        Doubles dBias = L::Widened(shared.fLog);
        const FloatMask rational = below2 & shared.smooth;
        if (Bits(rational) != ALL) {
            const Doubles dRational = L::Widened(rational);
            dNumerator = L::Choose(dRational, dNumerator, Log<L>(dValue + L::Each(1)));
            dDenominator = L::Choose(dRational, dDenominator, L::Each(1));
        }
        if (Bits(shared.smooth) != ALL)
            dBias = L::Choose(L::Widened(shared.smooth), dBias,
                              BiasedLog<L>(fValue / Each(curve.fRelativeMax), curve.fBiasPower));
        // One division for three differs from them in the last bits, which RoundsAlike allows for.
        const Doubles dResult = dNumerator / (dDenominator * dBias * L::Each(curve.fDivisor));
        const Floats fResult = L::Rounded(dResult);
        const FloatMask known = RoundsAlike<L>(dResult);
        Store(pfValues,
              Bits(known) == ALL ? fResult : WithPlainPixels(fResult, known, fValue, shared, curve));
    }

    // One lane in many thousands comes here.

    [[gnu::noinline]] static Floats WithPlainLogs(Floats fLog, FloatMask known, Floats fCentre,
                                                  const ToneCurve& curve)
    {
        float afLog[COUNT], afCentre[COUNT];
        Store(afLog, fLog);
        Store(afCentre, fCentre);
        for (std::size_t i = 0; i < COUNT; ++i)
            if (!Holds(known, i))
                afLog[i] = SharedLog(afCentre[i], curve);
        return Load(afLog);
    }

    [[gnu::noinline]] static Floats WithPlainPixels(Floats fResult, FloatMask known, Floats fValue,
                                                    const Shared& shared, const ToneCurve& curve)
    {
        float afResult[COUNT], afValue[COUNT], afShared[COUNT];
        Store(afResult, fResult);
        Store(afValue, fValue);
        Store(afShared, shared.fLog);
        for (std::size_t i = 0; i < COUNT; ++i)
            if (!Holds(known, i))
                afResult[i] = Holds(shared.smooth, i)
                                  ? CompressedInSmoothBlock(afValue[i], afShared[i], curve)
                                  : CompressedInRoughBlock(afValue[i], curve);
        return Load(afResult);
    }
};

} // namespace LS::Lanes
