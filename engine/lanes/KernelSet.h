// The kernels, for the lanes that a source chooses.
#pragma once

#include "engine/lanes/CompressKernel.h"
#include "engine/lanes/ToBytesKernel.h"
#include "engine/lanes/ToRGBKernel.h"
#include "engine/lanes/ToYxyKernel.h"

namespace LS::Lanes {

template <class L> class KernelSet {
public:
    static constexpr ToneKernels Table()
    {
        return {PlanesToYxy, RowToYxy, CompressKernel<L>::Run, PlanesToRGB, RowToRGB, ToBytesKernel<L>::Run};
    }

private:
    // Where pixels come from and go to, four at a time.

    struct Planes {
        float *pfFirst, *pfSecond, *pfThird;

        LS_LANES Triple Read() const { return {Load(pfFirst), Load(pfSecond), Load(pfThird)}; }
        LS_LANES void Write(Triple pixels)
        {
            Store(pfFirst, pixels.a);
            Store(pfSecond, pixels.b);
            Store(pfThird, pixels.c);
            pfFirst += COUNT;
            pfSecond += COUNT;
            pfThird += COUNT;
        }
    };

    struct InterleavedRow {
        float* pfPixels;

        LS_LANES Triple Read() const { return Deinterleaved(LoadTriple(pfPixels)); }
        LS_LANES void Write(Triple pixels)
        {
            StoreTriple(pfPixels, Interleaved(pixels));
            pfPixels += 3 * COUNT;
        }
    };

    struct YxyToRow {
        const float *pfY, *pfXY;
        float* pfRGB;

        LS_LANES Triple Read()
        {
            const Floats fLow = Load(pfXY), fHigh = Load(pfXY + COUNT);
            const Triple pixels = {Load(pfY), Shuffle<0, 2, 0, 2>(fLow, fHigh),
                                   Shuffle<1, 3, 1, 3>(fLow, fHigh)};
            pfY += COUNT;
            pfXY += 2 * COUNT;
            return pixels;
        }
        LS_LANES void Write(Triple pixels)
        {
            StoreTriple(pfRGB, Interleaved(pixels));
            pfRGB += 3 * COUNT;
        }
    };

    static std::size_t PlanesToYxy(float* pfFirst, float* pfSecond, float* pfThird, std::size_t nPixels,
                                   float* pfSumLog, float* pfMax)
    {
        return ToYxyKernel<L>::Run(Planes{pfFirst, pfSecond, pfThird}, nPixels, pfSumLog, pfMax);
    }
    static std::size_t RowToYxy(float* pfPixels, std::size_t nPixels, float* pfSumLog, float* pfMax)
    {
        return ToYxyKernel<L>::Run(InterleavedRow{pfPixels}, nPixels, pfSumLog, pfMax);
    }
    static std::size_t PlanesToRGB(float* pfFirst, float* pfSecond, float* pfThird, std::size_t nPixels)
    {
        return ToRGBKernel<L>::Run(Planes{pfFirst, pfSecond, pfThird}, nPixels);
    }
    static std::size_t RowToRGB(const float* pfY, const float* pfXY, std::size_t nPixels, float* pfRGB)
    {
        return ToRGBKernel<L>::Run(YxyToRow{pfY, pfXY, pfRGB}, nPixels);
    }
};

} // namespace LS::Lanes
