// The kernels for each instruction set, and the choice among them.
#include "engine/lanes/Kernels.h"

#include "Util/CpuFeatures.h"

// This file is compiled once for each.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "engine/lanes/Kernels.cpp"
#include <hwy/foreach_target.h>

#include "engine/lanes/CompressKernel-inl.h"
#include "engine/lanes/MergeKernel-inl.h"
#include "engine/lanes/ToBytesKernel-inl.h"
#include "engine/lanes/ToRGBKernel-inl.h"
#include "engine/lanes/ToYxyKernel-inl.h"

HWY_BEFORE_NAMESPACE();
namespace LS::Lanes::HWY_NAMESPACE {

#if LS_HAS_LANES

namespace {

// Where pixels come from and go to, four at a time.

struct Planes {
    float *pfFirst, *pfSecond, *pfThird;

    HWY_INLINE Triple Read() const { return {Load(pfFirst), Load(pfSecond), Load(pfThird)}; }
    HWY_INLINE void Write(const Triple& pixels)
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

    HWY_INLINE Triple Read() const { return LoadPixels(pfPixels); }
    HWY_INLINE void Write(const Triple& pixels)
    {
        StorePixels(pfPixels, pixels);
        pfPixels += 3 * COUNT;
    }
};

struct YxyToRow {
    const float *pfY, *pfXY;
    float* pfRGB;

    HWY_INLINE Triple Read()
    {
        const FloatTag tag;
        const Floats fLow = Load(pfXY), fHigh = Load(pfXY + COUNT);
        const Triple pixels = {Load(pfY), hn::ConcatEven(tag, fHigh, fLow), hn::ConcatOdd(tag, fHigh, fLow)};
        pfY += COUNT;
        pfXY += 2 * COUNT;
        return pixels;
    }
    HWY_INLINE void Write(const Triple& pixels)
    {
        StorePixels(pfRGB, pixels);
        pfRGB += 3 * COUNT;
    }
};

std::size_t PlanesToYxy(float* pfFirst, float* pfSecond, float* pfThird, std::size_t nPixels, float* pfSumLog,
                        float* pfMax)
{
    return ToYxyKernel::Run(Planes{pfFirst, pfSecond, pfThird}, nPixels, pfSumLog, pfMax);
}

std::size_t RowToYxy(float* pfPixels, std::size_t nPixels, float* pfSumLog, float* pfMax)
{
    return ToYxyKernel::Run(InterleavedRow{pfPixels}, nPixels, pfSumLog, pfMax);
}

std::size_t PlanesToRGB(float* pfFirst, float* pfSecond, float* pfThird, std::size_t nPixels)
{
    return ToRGBKernel::Run(Planes{pfFirst, pfSecond, pfThird}, nPixels);
}

std::size_t RowToRGB(const float* pfY, const float* pfXY, std::size_t nPixels, float* pfRGB)
{
    return ToRGBKernel::Run(YxyToRow{pfY, pfXY, pfRGB}, nPixels);
}

constinit const EngineKernels KERNELS = {
    MergeKernel::Run, PlanesToYxy, RowToYxy, CompressKernel::Run, PlanesToRGB, RowToRGB, ToBytesKernel::Run};

} // namespace

const EngineKernels* Table()
{
    return &KERNELS;
}

#else

const EngineKernels* Table()
{
    return nullptr;
}

#endif

} // namespace LS::Lanes::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace LS::Lanes {

HWY_EXPORT(Table);

const EngineKernels* Kernels()
{
    return Util::KernelsAllowed() ? HWY_DYNAMIC_DISPATCH(Table)() : nullptr;
}

} // namespace LS::Lanes

#endif // HWY_ONCE
