// Luminance and chromaticity back to R, G, B. The plain twin is in Colour.cpp.
#pragma once

#include "engine/lanes/Kernels.h"
#include "engine/lanes/Lanes.h"

namespace LS::Lanes {

template <class L> class ToRGBKernel {
public:
    /// See ToneKernels::ToRGB; Pixels is a source and target of pixels.
    template <class Pixels> static std::size_t Run(Pixels pixels, std::size_t nPixels)
    {
        const std::size_t nWhole = nPixels - nPixels % COUNT;
        for (std::size_t i = 0; i < nWhole; i += COUNT)
            pixels.Write(Converted(pixels.Read()));
        return nWhole;
    }

private:
    using Doubles = typename L::Doubles;

    LS_LANES static Triple Converted(Triple yxy)
    {
        // The float nearest to 0.00001 is the last below it, so comparing floats is comparing with the
        // double.
        static_assert(0.00001F < 0.00001);
        const Floats fTiny = Each(0.00001F);
        const FloatMask visible = (yxy.a > fTiny) & (yxy.b > fTiny) & (yxy.c > fTiny);
        const Floats fX = Choose(visible, yxy.a * yxy.b / yxy.c, fTiny);
        const Floats fZ = Choose(visible, fX / yxy.b - fX - yxy.a, fTiny);
        const Doubles dX = L::Widened(fX), dY = L::Widened(yxy.a), dZ = L::Widened(fZ);
        return {L::Rounded(L::Each(2.5651) * dX - L::Each(1.1665) * dY - L::Each(0.3986) * dZ),
                L::Rounded(L::Each(-1.0217) * dX + L::Each(1.9777) * dY + L::Each(0.0439) * dZ),
                L::Rounded(L::Each(0.0753) * dX - L::Each(0.2543) * dY + L::Each(1.1892) * dZ)};
    }
};

} // namespace LS::Lanes
