// Luminance and chromaticity back to R, G, B. The plain twin is in Colour.cpp.

// Once per target.
#if defined(LS_ENGINE_LANES_TORGBKERNEL_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef LS_ENGINE_LANES_TORGBKERNEL_INL_H
#undef LS_ENGINE_LANES_TORGBKERNEL_INL_H
#else
#define LS_ENGINE_LANES_TORGBKERNEL_INL_H
#endif

#include "Util/Lanes-inl.h"
#include "engine/lanes/Kernels.h"

#if LS_HAS_LANES
HWY_BEFORE_NAMESPACE();
namespace LS::Lanes::HWY_NAMESPACE {

class ToRGBKernel {
public:
    /// See EngineKernels::ToRGB; Pixels is a source and target of pixels.
    template <class Pixels> static std::size_t Run(Pixels pixels, std::size_t nPixels)
    {
        const std::size_t nWhole = nPixels - nPixels % COUNT;
        for (std::size_t i = 0; i < nWhole; i += COUNT)
            pixels.Write(Converted(pixels.Read()));
        return nWhole;
    }

private:
    HWY_INLINE static Triple Converted(Triple yxy)
    {
        // The float nearest to 0.00001 is the last below it, so comparing floats is comparing with the
        // double.
        static_assert(0.00001F < 0.00001);
        const Floats fTiny = Each(0.00001F);
        const FloatMask visible = hn::And(hn::And(yxy.a > fTiny, yxy.b > fTiny), yxy.c > fTiny);
        const Floats fX = hn::IfThenElse(visible, yxy.a * yxy.b / yxy.c, fTiny);
        const Floats fZ = hn::IfThenElse(visible, fX / yxy.b - fX - yxy.a, fTiny);
        const Doubles dX = Widened(fX), dY = Widened(yxy.a), dZ = Widened(fZ);
        return {Rounded(Each(2.5651) * dX - Each(1.1665) * dY - Each(0.3986) * dZ),
                Rounded(Each(-1.0217) * dX + Each(1.9777) * dY + Each(0.0439) * dZ),
                Rounded(Each(0.0753) * dX - Each(0.2543) * dY + Each(1.1892) * dZ)};
    }
};

} // namespace LS::Lanes::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif // LS_HAS_LANES
#endif // once per target
