// One whole band of the compression of luminance, four blocks at a time. The plain twin is in
// LuminanceCompression.cpp.

// Once per target.
#if defined(LS_ENGINE_LANES_COMPRESSKERNEL_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef LS_ENGINE_LANES_COMPRESSKERNEL_INL_H
#undef LS_ENGINE_LANES_COMPRESSKERNEL_INL_H
#else
#define LS_ENGINE_LANES_COMPRESSKERNEL_INL_H
#endif

#include "engine/LuminanceCompression.h"
#include "engine/lanes/Elementary-inl.h"
#include "engine/lanes/Kernels.h"

#if LS_HAS_LANES
HWY_BEFORE_NAMESPACE();
namespace LS::Lanes::HWY_NAMESPACE {

class CompressKernel {
public:
    /// See EngineKernels::CompressBand.
    static std::size_t Run(float* pfBand, std::size_t nWidth, const ToneCurve& curve)
    {
        const std::size_t nWhole = nWidth - nWidth % STEP;
        for (std::size_t nFirst = 0; nFirst < nWhole; nFirst += STRIP)
            CompressStrip(pfBand + nFirst, nWidth, nWhole - nFirst < STRIP ? nWhole - nFirst : STRIP, curve);
        return nWhole;
    }

private:
    static constexpr std::size_t STEP = COUNT * TONE_BLOCK; ///< columns of as many blocks as there are lanes
    static constexpr std::size_t STRIP = 32 * STEP;

    /// What the pixels of a block share.
    struct Shared {
        HWY_INLINE Shared() {} // one that isn't written here would know no target
        HWY_INLINE Shared(FloatMask smoothBlocks, Floats fLogs) : smooth(smoothBlocks), fLog(fLogs) {}

        FloatMask smooth;
        Floats fLog; ///< the bias term where the block is smooth
    };

    /// Two passes, so that the long calculation for some blocks and that for others' pixels don't wait for
    /// each other.
    HWY_INLINE static void CompressStrip(float* pfFirst, std::size_t nStride, std::size_t nColumns,
                                         const ToneCurve& curve)
    {
        Shared blocks[STRIP / STEP];
        for (std::size_t x = 0; x < nColumns; x += STEP)
            blocks[x / STEP] = Normalise(pfFirst + x, nStride, curve);
        for (std::size_t x = 0; x < nColumns; x += STEP) {
            // Lanes of blocks 0 to 3, spread to the columns that they cover.
            const Shared& shared = blocks[x / STEP];
            const Shared first = Spread(shared, {0, 0, 0, 1}), second = Spread(shared, {1, 1, 2, 2}),
                         third = Spread(shared, {2, 3, 3, 3});
            for (std::size_t y = 0; y < TONE_BLOCK; ++y) {
                float* pfRow = pfFirst + y * nStride + x;
                Compress(pfRow, first, curve);
                Compress(pfRow + COUNT, second, curve);
                Compress(pfRow + 2 * COUNT, third, curve);
            }
        }
    }

    HWY_INLINE static Floats Normalised(Floats fY, const ToneCurve& curve)
    {
        return fY / Each(curve.fAdaptation) * Each(curve.fScale);
    }

    /// The lanes in another order.
    HWY_INLINE static Shared Spread(const Shared& shared, const std::int32_t (&order)[COUNT])
    {
        const auto indices = hn::SetTableIndices(FloatTag(), order);
        const Floats smooth = hn::VecFromMask(FloatTag(), shared.smooth);
        return {hn::MaskFromVec(hn::TableLookupLanes(smooth, indices)),
                hn::TableLookupLanes(shared.fLog, indices)};
    }

    /// Normalises four blocks in place.
    HWY_INLINE static Shared Normalise(float* pfFirst, std::size_t nStride, const ToneCurve& curve)
    {
        Floats fTotal = Each(0.0F), fFirst = fTotal, fCentre = fTotal;
        for (std::size_t y = 0; y < TONE_BLOCK; ++y) {
            const Triple values = LoadPixels(pfFirst + y * nStride);
            const Triple columns = {Normalised(values.a, curve), Normalised(values.b, curve),
                                    Normalised(values.c, curve)};
            StorePixels(pfFirst + y * nStride, columns);
            fTotal = fTotal + columns.a + columns.b + columns.c;
            if (y == 0)
                fFirst = columns.a;
            if (y == 1)
                fCentre = columns.b;
        }
        const Floats fContrast = Rounded(Widened(fTotal) / Each(9.0) - Widened(fFirst));
        const FloatMask rough = hn::Or(fContrast <= Each(-1.0F), fContrast >= Each(1.0F));

        const Doubles dLog = BiasedLog(fCentre / Each(curve.fRelativeMax), curve.fBiasPower);
        const FloatMask known = hn::Or(RoundsAlike(dLog), rough);
        const Floats fLog = Rounded(dLog);
        return {hn::Not(rough), AllHold(known) ? fLog : WithPlainLogs(fLog, known, fCentre, curve)};
    }

    HWY_INLINE static void Compress(float* pfValues, const Shared& shared, const ToneCurve& curve)
    {
        const Floats fValue = Load(pfValues);
        const Doubles dValue = Widened(fValue);
        const FloatMask below1 = fValue < Each(1.0F), below2 = fValue < Each(2.0F);
        const DoubleMask wideBelow1 = Widened(below1);
        // v (a v + 6) / (b v + c): both rational functions have this form.
        const Doubles dA = Choose(wideBelow1, Each(1.0), Each(0.7662));
        const Doubles dB = Choose(wideBelow1, Each(4.0), Each(3.7658));
        const Doubles dC = Choose(wideBelow1, Each(6.0), Each(5.9897));
        Doubles dNumerator = dValue * (dA * dValue + Each(6.0));
        Doubles dDenominator = dB * dValue + dC;
        Doubles dBias = Widened(shared.fLog);
        const FloatMask rational = hn::And(below2, shared.smooth);
        if (!AllHold(rational)) {
            const DoubleMask wideRational = Widened(rational);
            dNumerator = Choose(wideRational, dNumerator, Log(dValue + Each(1.0)));
            dDenominator = Choose(wideRational, dDenominator, Each(1.0));
        }
        if (!AllHold(shared.smooth))
            dBias = Choose(Widened(shared.smooth), dBias,
                           BiasedLog(fValue / Each(curve.fRelativeMax), curve.fBiasPower));
        // One division for three differs from them in the last bits, which RoundsAlike allows for.
        const Doubles dResult = dNumerator / (dDenominator * dBias * Each(double{curve.fDivisor}));
        const Floats fResult = Rounded(dResult);
        const FloatMask known = RoundsAlike(dResult);
        Store(pfValues, AllHold(known) ? fResult : WithPlainPixels(fResult, known, fValue, shared, curve));
    }

    // One lane in many thousands comes here.

    HWY_NOINLINE static Floats WithPlainLogs(Floats fLog, FloatMask known, Floats fCentre,
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

    HWY_NOINLINE static Floats WithPlainPixels(Floats fResult, FloatMask known, Floats fValue,
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

} // namespace LS::Lanes::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif // LS_HAS_LANES
#endif // once per target
