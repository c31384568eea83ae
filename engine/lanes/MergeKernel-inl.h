// Groups of pixels through all images of a merge. The plain twin is in MergeRow.cpp.
//
// What a kernel leaves to its twin is the end of the row, and pixels without a usable reading, which are
// rare. The quotients stay real divisions: a product with 1 / E has other bits. The division by 3 and those
// by E are done for all pixels of a group at once. Passing over groups without weight gains nothing on
// photographs.

// Once per target.
#if defined(LS_ENGINE_LANES_MERGEKERNEL_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef LS_ENGINE_LANES_MERGEKERNEL_INL_H
#undef LS_ENGINE_LANES_MERGEKERNEL_INL_H
#else
#define LS_ENGINE_LANES_MERGEKERNEL_INL_H
#endif

#include "Util/Lanes-inl.h"
#include "engine/MergeRow.h"

#if LS_HAS_LANES
HWY_BEFORE_NAMESPACE();
namespace LS::Lanes::HWY_NAMESPACE {

class MergeKernel {
public:
    /// See EngineKernels::MergeRow.
    static std::size_t Run(const MergeTables& tables, std::span<const unsigned char* const> vpRows,
                           std::size_t nWidth, float* pfRow)
    {
        std::size_t x = 0;
        // A store writes four floats for a pixel, so one more pixel has to follow the group.
        for (; x + GROUP < nWidth; x += GROUP)
            if (!MergeGroup(tables, vpRows, x, pfRow + 3 * x))
                reference::MergePixels(tables, vpRows, x, x + GROUP, pfRow);
        return x;
    }

private:
    // One block of four floats, or two: first a pixel in each, then a channel of four pixels.
    using Tag = hn::CappedTag<float, 2 * COUNT>;
    using Blocks = hn::Vec<Tag>;
    static constexpr std::size_t GROUP = hn::MaxLanes(Tag());

    /// @return false if a pixel of the group has no usable reading
    HWY_INLINE static bool MergeGroup(const MergeTables& tables, std::span<const unsigned char* const> vpRows,
                                      std::size_t x, float* pfPixels)
    {
        const Tag tag;
        const Blocks three = hn::Set(tag, 3.0F);
        Blocks sumRed = hn::Zero(tag), sumGreen = sumRed, sumBlue = sumRed, sumWeight = sumRed;
        for (std::size_t i = 0; i < vpRows.size(); ++i) {
            const unsigned char* const pPixels = vpRows[i] + 4 * x;
            const Blocks exposure = hn::Set(tag, tables.vfExposures[i]);
            Blocks red = Lookup(tables, pPixels);
            Blocks green = Lookup(tables, pPixels + 4);
            Blocks blue = Lookup(tables, pPixels + 8);
            Blocks weight = Lookup(tables, pPixels + 12);
            TransposeBlocks(red, green, blue, weight); // from pixels to channels
            weight = weight / three;
            sumRed = sumRed + red * weight / exposure;
            sumGreen = sumGreen + green * weight / exposure;
            sumBlue = sumBlue + blue * weight / exposure;
            sumWeight = sumWeight + weight;
        }
        Blocks first = sumRed / sumWeight, second = sumGreen / sumWeight, third = sumBlue / sumWeight;
        Blocks fourth = hn::Zero(tag);
        TransposeBlocks(first, second, third, fourth);
        StorePixels(first, second, third, fourth, pfPixels);
        return hn::AllFalse(tag, hn::Abs(sumWeight) < hn::Set(tag, MergeTables::NO_WEIGHT));
    }

    /// Three curve values and the sum of weights of a pixel. The zeros added to a curve value could only turn
    /// -0 into 0, which no sum that starts at 0 can tell apart.
    HWY_INLINE static Floats LookupOne(const MergeTables& tables, const unsigned char* pPixel)
    {
        const FloatTag tag;
        return hn::Load(tag, tables.channels[0][pPixel[1]].f.data()) +
               hn::Load(tag, tables.channels[1][pPixel[2]].f.data()) +
               hn::Load(tag, tables.channels[2][pPixel[3]].f.data());
    }

    /// The same for a pixel, and in the other block for the fourth behind it.
    template <class T = Tag>
    HWY_INLINE static hn::Vec<T> Lookup(const MergeTables& tables, const unsigned char* pPixel)
    {
        if constexpr (GROUP == COUNT)
            return LookupOne(tables, pPixel);
        else
            return hn::Combine(T(), LookupOne(tables, pPixel + 4 * COUNT), LookupOne(tables, pPixel));
    }

    /// Transposes the 4 x 4 floats of each block.
    HWY_INLINE static void TransposeBlocks(Blocks& a, Blocks& b, Blocks& c, Blocks& d)
    {
        const Tag tag;
        const Blocks lowAC = hn::InterleaveLower(tag, a, c), highAC = hn::InterleaveUpper(tag, a, c);
        const Blocks lowBD = hn::InterleaveLower(tag, b, d), highBD = hn::InterleaveUpper(tag, b, d);
        a = hn::InterleaveLower(tag, lowAC, lowBD);
        b = hn::InterleaveUpper(tag, lowAC, lowBD);
        c = hn::InterleaveLower(tag, highAC, highBD);
        d = hn::InterleaveUpper(tag, highAC, highBD);
    }

    /// Three floats of each pixel, in the order of the pixels; one more float is written behind the last.
    template <class B> HWY_INLINE static void StorePixels(B a, B b, B c, B d, float* pfPixels)
    {
        const FloatTag block;
        if constexpr (GROUP == COUNT) {
            StoreFour(a, b, c, d, pfPixels);
        } else {
            StoreFour(hn::LowerHalf(block, a), hn::LowerHalf(block, b), hn::LowerHalf(block, c),
                      hn::LowerHalf(block, d), pfPixels);
            StoreFour(hn::UpperHalf(block, a), hn::UpperHalf(block, b), hn::UpperHalf(block, c),
                      hn::UpperHalf(block, d), pfPixels + 3 * COUNT);
        }
    }

    HWY_INLINE static void StoreFour(Floats a, Floats b, Floats c, Floats d, float* pfPixels)
    {
        Store(pfPixels, a);
        Store(pfPixels + 3, b);
        Store(pfPixels + 6, c);
        Store(pfPixels + 9, d);
    }
};

} // namespace LS::Lanes::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif // LS_HAS_LANES
#endif // once per target
