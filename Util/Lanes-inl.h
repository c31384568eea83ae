// Four pixels side by side: four floats, and the four doubles that they become in between.
//
// A thin layer over Highway, which compiles kernels for each instruction set and chooses one at run time. A
// source with kernels is compiled once for each, into a namespace of its own; see <hwy/foreach_target.h>.
// Each operation gives the bits of its scalar form; none is contracted or reordered.
//
// No target has lanes for this in HWY_SCALAR, where plain twins are all there is: LS_HAS_LANES is 0.

// Once per target.
#if defined(LS_UTIL_LANES_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef LS_UTIL_LANES_INL_H
#undef LS_UTIL_LANES_INL_H
#else
#define LS_UTIL_LANES_INL_H
#endif

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <hwy/highway.h>

#undef LS_HAS_LANES
#if HWY_TARGET == HWY_SCALAR
#define LS_HAS_LANES 0
#else
#define LS_HAS_LANES 1

HWY_BEFORE_NAMESPACE();
namespace LS::Lanes::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

constexpr std::size_t COUNT = 4;

// Floats, and the bit patterns of floats.

using FloatTag = hn::FixedTag<float, COUNT>;
using BitsTag = hn::RebindToUnsigned<FloatTag>;
using Floats = hn::Vec<FloatTag>;
using FloatMask = hn::Mask<FloatTag>;
using Ints = hn::Vec<BitsTag>; ///< of 32 bits; differences wrap around

HWY_INLINE Floats Load(const float* pf)
{
    return hn::LoadU(FloatTag(), pf);
}
HWY_INLINE void Store(float* pf, Floats a)
{
    hn::StoreU(a, FloatTag(), pf);
}
HWY_INLINE Floats Each(float f)
{
    return hn::Set(FloatTag(), f);
}
HWY_INLINE Ints EachInt(std::uint32_t n)
{
    return hn::Set(BitsTag(), n);
}
HWY_INLINE bool AllHold(FloatMask mask)
{
    return hn::AllTrue(FloatTag(), mask);
}
HWY_INLINE Ints BitPattern(Floats a)
{
    return hn::BitCast(BitsTag(), a);
}
/// -1 where the mask holds, else 0.
HWY_INLINE Ints AsInts(FloatMask mask)
{
    return BitPattern(hn::VecFromMask(FloatTag(), mask));
}
HWY_INLINE bool Holds(FloatMask mask, std::size_t nLane)
{
    std::uint32_t an[COUNT];
    hn::StoreU(AsInts(mask), BitsTag(), an);
    return an[nLane] != 0;
}

/// Three channels of four pixels.
struct Triple {
    Floats a, b, c;
};

/// Four interleaved pixels.
HWY_INLINE Triple LoadPixels(const float* pf)
{
    Floats a, b, c; // not a Triple, whose own constructor would know no target
    hn::LoadInterleaved3(FloatTag(), pf, a, b, c);
    return {a, b, c};
}
HWY_INLINE void StorePixels(float* pf, const Triple& t)
{
    hn::StoreInterleaved3(t.a, t.b, t.c, FloatTag(), pf);
}

// Doubles: one vector, or two where vectors are narrower.

using DoubleTag = hn::CappedTag<double, COUNT>;
using DoubleBitsTag = hn::RebindToUnsigned<DoubleTag>;
constexpr bool ONE_VECTOR = hn::MaxLanes(DoubleTag()) == COUNT;

/// Of vectors or masks; with ONE_VECTOR both are the same.
template <class Part> struct Parts {
    Part low, high;
};
using Doubles = Parts<hn::Vec<DoubleTag>>;
using DoubleMask = Parts<hn::Mask<DoubleTag>>;

/// Applies a function to the parts of its arguments.
template <class F, class... P> HWY_INLINE auto Partwise(F f, const Parts<P>&... parts)
{
    const auto low = f(parts.low...);
    if constexpr (ONE_VECTOR)
        return Parts<std::remove_const_t<decltype(low)>>{low, low};
    else
        return Parts<std::remove_const_t<decltype(low)>>{low, f(parts.high...)};
}

HWY_INLINE Doubles operator+(const Doubles& a, const Doubles& b)
{
    return Partwise([](auto x, auto y) HWY_ATTR { return hn::Add(x, y); }, a, b);
}
HWY_INLINE Doubles operator-(const Doubles& a, const Doubles& b)
{
    return Partwise([](auto x, auto y) HWY_ATTR { return hn::Sub(x, y); }, a, b);
}
HWY_INLINE Doubles operator*(const Doubles& a, const Doubles& b)
{
    return Partwise([](auto x, auto y) HWY_ATTR { return hn::Mul(x, y); }, a, b);
}
HWY_INLINE Doubles operator/(const Doubles& a, const Doubles& b)
{
    return Partwise([](auto x, auto y) HWY_ATTR { return hn::Div(x, y); }, a, b);
}
HWY_INLINE DoubleMask operator<=(const Doubles& a, const Doubles& b)
{
    return Partwise([](auto x, auto y) HWY_ATTR { return hn::Le(x, y); }, a, b);
}
HWY_INLINE DoubleMask operator&(const DoubleMask& a, const DoubleMask& b)
{
    return Partwise([](auto x, auto y) HWY_ATTR { return hn::And(x, y); }, a, b);
}
HWY_INLINE Doubles Choose(const DoubleMask& mask, const Doubles& a, const Doubles& b)
{
    return Partwise([](auto m, auto x, auto y) HWY_ATTR { return hn::IfThenElse(m, x, y); }, mask, a, b);
}
HWY_INLINE Doubles Magnitude(const Doubles& a)
{
    return Partwise([](auto x) HWY_ATTR { return hn::Abs(x); }, a);
}
HWY_INLINE Doubles Each(double d)
{
    const auto part = hn::Set(DoubleTag(), d);
    return {part, part};
}
HWY_INLINE Doubles LoadDoubles(const double* pd)
{
    const auto low = hn::LoadU(DoubleTag(), pd);
    return {low, ONE_VECTOR ? low : hn::LoadU(DoubleTag(), pd + COUNT / 2)};
}
HWY_INLINE void StoreDoubles(double* pd, const Doubles& a)
{
    hn::StoreU(a.low, DoubleTag(), pd);
    if constexpr (!ONE_VECTOR)
        hn::StoreU(a.high, DoubleTag(), pd + COUNT / 2);
}

// Templates, so that only the branch in use is compiled.

template <class Tag = DoubleTag> HWY_INLINE Doubles Widened(Floats a)
{
    const Tag tag;
    if constexpr (ONE_VECTOR) {
        const auto whole = hn::PromoteTo(tag, a);
        return {whole, whole};
    } else {
        const hn::Half<FloatTag> half;
        return {hn::PromoteTo(tag, hn::LowerHalf(half, a)), hn::PromoteTo(tag, hn::UpperHalf(half, a))};
    }
}
template <class Part> HWY_INLINE Floats Rounded(const Parts<Part>& a)
{
    if constexpr (ONE_VECTOR) {
        return hn::DemoteTo(FloatTag(), a.low);
    } else {
        const hn::Half<FloatTag> half;
        return hn::Combine(FloatTag(), hn::DemoteTo(half, a.high), hn::DemoteTo(half, a.low));
    }
}
template <class Tag = DoubleTag> HWY_INLINE DoubleMask Widened(FloatMask mask)
{
    const Tag tag;
    const Floats lanes = hn::VecFromMask(FloatTag(), mask);
    if constexpr (ONE_VECTOR) {
        const hn::RebindToSigned<Tag> wide;
        const auto bits = hn::PromoteTo(wide, hn::BitCast(hn::RebindToSigned<FloatTag>(), lanes));
        const auto whole = hn::MaskFromVec(hn::BitCast(tag, bits));
        return {whole, whole};
    } else {
        const auto low = hn::InterleaveLower(FloatTag(), lanes, lanes);
        const auto high = hn::InterleaveUpper(FloatTag(), lanes, lanes);
        return {hn::MaskFromVec(hn::BitCast(tag, low)), hn::MaskFromVec(hn::BitCast(tag, high))};
    }
}

// Integer arithmetic on the bit patterns of doubles.

/// Applies a function of bit patterns.
template <class F, class... P> HWY_INLINE Doubles OnBits(F f, const Parts<P>&... parts)
{
    return Partwise([f](auto... x)
                        HWY_ATTR { return hn::BitCast(DoubleTag(), f(hn::BitCast(DoubleBitsTag(), x)...)); },
                    parts...);
}
HWY_INLINE Doubles FromBits(std::uint64_t nBits)
{
    const auto part = hn::BitCast(DoubleTag(), hn::Set(DoubleBitsTag(), nBits));
    return {part, part};
}
HWY_INLINE Doubles AddBits(const Doubles& a, const Doubles& b)
{
    return OnBits([](auto x, auto y) HWY_ATTR { return hn::Add(x, y); }, a, b);
}
HWY_INLINE Doubles SubtractBits(const Doubles& a, const Doubles& b)
{
    return OnBits([](auto x, auto y) HWY_ATTR { return hn::Sub(x, y); }, a, b);
}
HWY_INLINE Doubles AndBits(const Doubles& a, const Doubles& b)
{
    return OnBits([](auto x, auto y) HWY_ATTR { return hn::And(x, y); }, a, b);
}
HWY_INLINE Doubles OrBits(const Doubles& a, const Doubles& b)
{
    return OnBits([](auto x, auto y) HWY_ATTR { return hn::Or(x, y); }, a, b);
}
template <int COUNT_OF_BITS> HWY_INLINE Doubles ShiftBitsRight(const Doubles& a)
{
    return OnBits([](auto x) HWY_ATTR { return hn::ShiftRight<COUNT_OF_BITS>(x); }, a);
}
template <int COUNT_OF_BITS> HWY_INLINE Doubles ShiftBitsLeft(const Doubles& a)
{
    return OnBits([](auto x) HWY_ATTR { return hn::ShiftLeft<COUNT_OF_BITS>(x); }, a);
}

} // namespace LS::Lanes::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif // LS_HAS_LANES
#endif // once per target
