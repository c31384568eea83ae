// Channel values to bytes by a table. The plain twin is in DisplayCurve.cpp, as is what makes the table.

// Once per target.
#if defined(LS_ENGINE_LANES_TOBYTESKERNEL_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef LS_ENGINE_LANES_TOBYTESKERNEL_INL_H
#undef LS_ENGINE_LANES_TOBYTESKERNEL_INL_H
#else
#define LS_ENGINE_LANES_TOBYTESKERNEL_INL_H
#endif

#include "Util/Lanes-inl.h"
#include "engine/ByteTable.h"
#include "engine/lanes/Kernels.h"

#if LS_HAS_LANES
HWY_BEFORE_NAMESPACE();
namespace LS::Lanes::HWY_NAMESPACE {

class ToBytesKernel {
public:
    /// See EngineKernels::ToBytes.
    static std::size_t Run(const float* pfValues, std::size_t nValues, const ByteCells& cells,
                           unsigned char* pBytes)
    {
        constexpr std::size_t STEP = 4 * COUNT;
        const std::size_t nWhole = nValues - nValues % STEP;
        for (std::size_t i = 0; i < nWhole; i += STEP)
            StoreBytes(pBytes + i, Looked(pfValues + i, cells), Looked(pfValues + i + COUNT, cells),
                       Looked(pfValues + i + 2 * COUNT, cells), Looked(pfValues + i + 3 * COUNT, cells));
        return nWhole;
    }

private:
    /// Table entries by lane. Single loads: AVX2's own gathering was slower on the machine of
    /// docs/PERFORMANCE.md.
    HWY_INLINE static Ints Gather(const std::int32_t* pnEntries, Ints indices)
    {
        alignas(16) std::uint32_t an[COUNT];
        hn::Store(indices, BitsTag(), an);
        const hn::FixedTag<std::uint64_t, COUNT / 2> pairs;
        const auto entry = [=](std::size_t i) HWY_ATTR {
            return std::uint64_t{static_cast<std::uint32_t>(pnEntries[an[i]])};
        };
        return hn::BitCast(BitsTag(), hn::InterleaveLower(pairs, hn::Set(pairs, entry(0) | entry(1) << 32),
                                                          hn::Set(pairs, entry(2) | entry(3) << 32)));
    }

    /// 16 integers of 0 to 255 as bytes.
    HWY_INLINE static void StoreBytes(unsigned char* pBytes, Ints a, Ints b, Ints c, Ints d)
    {
        const hn::Repartition<std::uint16_t, BitsTag> words;
        const hn::Repartition<std::uint8_t, BitsTag> bytes;
        const auto low = hn::ConcatEven(words, hn::BitCast(words, b), hn::BitCast(words, a));
        const auto high = hn::ConcatEven(words, hn::BitCast(words, d), hn::BitCast(words, c));
        hn::StoreU(hn::ConcatEven(bytes, hn::BitCast(bytes, high), hn::BitCast(bytes, low)), bytes, pBytes);
    }

    /// See ByteCells.
    HWY_INLINE static Ints Looked(const float* pfValues, const ByteCells& cells)
    {
        const Floats fLoaded = Load(pfValues), fLowest = Each(cells.fLowest);
        const Floats fAbove = hn::IfThenElse(fLoaded > fLowest, fLoaded, fLowest); // of NaN, too
        const Floats fValue = hn::Min(fAbove, Each(1.0F));
        const Ints nBits = BitPattern(fValue);
        // A mask that holds is -1.
        const Ints nCell = hn::ShiftRight<ByteCells::BITS>(nBits) -
                           EachInt(static_cast<std::uint32_t>(cells.nFirstCell)) -
                           AsInts(fValue > Each(cells.fLineEnd));
        const Ints nInCell = nBits & EachInt(ByteCells::SIZE - 1);
        return hn::ShiftRight<ByteCells::BITS>(Gather(cells.pnEntries, nCell) + nInCell);
    }
};

} // namespace LS::Lanes::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif // LS_HAS_LANES
#endif // once per target
