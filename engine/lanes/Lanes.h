// Four pixels side by side: four floats, and the four doubles that they become in between.
//
// A set of lanes is a class with the type Doubles, which serves as mask and as bit pattern, too, and with
// functions by name for what no operator can say. Kernels are templates of such a class. Each operation gives
// the bits of its scalar form; none is contracted or reordered.
//
// Sources with kernels are compiled with the flags of their instruction set. Nothing in them may therefore be
// an inline function that other sources share, for the linker could keep the copy with the better
// instructions: scripts/check_layers.sh looks for such. What stands here is always inlined, and the templates
// differ by their lanes.
#pragma once

#include <cstddef>
#include <cstdint>

#include <immintrin.h>

#define LS_LANES [[gnu::always_inline]] inline

namespace LS::Lanes {

constexpr std::size_t COUNT = 4;

struct Floats {
    __m128 v;
};
struct FloatMask {
    __m128 v;
};
struct Ints {
    __m128i v;
};

LS_LANES Floats operator+(Floats a, Floats b)
{
    return {_mm_add_ps(a.v, b.v)};
}
LS_LANES Floats operator-(Floats a, Floats b)
{
    return {_mm_sub_ps(a.v, b.v)};
}
LS_LANES Floats operator*(Floats a, Floats b)
{
    return {_mm_mul_ps(a.v, b.v)};
}
LS_LANES Floats operator/(Floats a, Floats b)
{
    return {_mm_div_ps(a.v, b.v)};
}
LS_LANES FloatMask operator<(Floats a, Floats b)
{
    return {_mm_cmplt_ps(a.v, b.v)};
}
LS_LANES FloatMask operator>(Floats a, Floats b)
{
    return {_mm_cmpgt_ps(a.v, b.v)};
}
LS_LANES FloatMask operator<=(Floats a, Floats b)
{
    return {_mm_cmple_ps(a.v, b.v)};
}
LS_LANES FloatMask operator>=(Floats a, Floats b)
{
    return {_mm_cmpge_ps(a.v, b.v)};
}
LS_LANES FloatMask operator==(Floats a, Floats b)
{
    return {_mm_cmpeq_ps(a.v, b.v)};
}
LS_LANES FloatMask operator&(FloatMask a, FloatMask b)
{
    return {_mm_and_ps(a.v, b.v)};
}
LS_LANES FloatMask operator|(FloatMask a, FloatMask b)
{
    return {_mm_or_ps(a.v, b.v)};
}
LS_LANES Ints operator+(Ints a, Ints b)
{
    return {_mm_add_epi32(a.v, b.v)};
}
LS_LANES Ints operator-(Ints a, Ints b)
{
    return {_mm_sub_epi32(a.v, b.v)};
}
LS_LANES Ints operator&(Ints a, Ints b)
{
    return {_mm_and_si128(a.v, b.v)};
}

LS_LANES Floats Load(const float* pf)
{
    return {_mm_loadu_ps(pf)};
}
LS_LANES void Store(float* pf, Floats a)
{
    _mm_storeu_ps(pf, a.v);
}
LS_LANES Floats Each(float f)
{
    return {_mm_set1_ps(f)};
}
LS_LANES Ints Each(std::int32_t n)
{
    return {_mm_set1_epi32(n)};
}
/// b where a is not a number, as std::max(b, a).
LS_LANES Floats Max(Floats a, Floats b)
{
    return {_mm_max_ps(a.v, b.v)};
}
LS_LANES Floats Min(Floats a, Floats b)
{
    return {_mm_min_ps(a.v, b.v)};
}
LS_LANES Floats OrZero(FloatMask mask, Floats a)
{
    return {_mm_and_ps(mask.v, a.v)};
}
LS_LANES Floats Choose(FloatMask mask, Floats a, Floats b)
{
    return {_mm_or_ps(_mm_and_ps(mask.v, a.v), _mm_andnot_ps(mask.v, b.v))};
}
LS_LANES FloatMask Not(FloatMask a)
{
    return {_mm_xor_ps(a.v, _mm_castsi128_ps(_mm_set1_epi32(-1)))};
}
LS_LANES int Bits(FloatMask mask)
{
    return _mm_movemask_ps(mask.v);
} ///< lane 0 in bit 0
constexpr int ALL = (1 << COUNT) - 1; ///< the bits where a mask holds everywhere
LS_LANES bool Holds(FloatMask mask, std::size_t nLane)
{
    return (Bits(mask) >> nLane & 1) != 0;
}
LS_LANES Ints BitPattern(Floats a)
{
    return {_mm_castps_si128(a.v)};
}
LS_LANES Ints AsInts(FloatMask mask)
{
    return {_mm_castps_si128(mask.v)};
}
template <int COUNT_OF_BITS> LS_LANES Ints ShiftRight(Ints a)
{
    return {_mm_srli_epi32(a.v, COUNT_OF_BITS)};
}

/// Table entries by lane. Single loads: vpgatherdd was slower on the machine of docs/PERFORMANCE.md.
LS_LANES Ints Gather(const std::int32_t* pn, Ints indices)
{
    alignas(16) std::int32_t an[COUNT];
    _mm_store_si128(reinterpret_cast<__m128i*>(an), indices.v);
    return {_mm_setr_epi32(pn[an[0]], pn[an[1]], pn[an[2]], pn[an[3]])};
}

/// Lanes a, b of one vector and c, d of another.
template <int A, int B, int C, int D> LS_LANES Floats Shuffle(Floats x, Floats y)
{
    return {_mm_shuffle_ps(x.v, y.v, _MM_SHUFFLE(D, C, B, A))};
}

/// Three channels of four pixels.
struct Triple {
    Floats a, b, c;
};

/// From a0 b0 c0 a1 | b1 c1 a2 b2 | c2 a3 b3 c3 to a0 a1 a2 a3 | b0 ... | c0 ...
LS_LANES Triple Deinterleaved(Triple t)
{
    const Floats fHigh = Shuffle<2, 3, 1, 2>(t.b, t.c); // a2 b2 a3 b3
    const Floats fLow = Shuffle<1, 2, 0, 1>(t.a, t.b);  // b0 c0 b1 c1
    return {Shuffle<0, 3, 0, 2>(t.a, fHigh), Shuffle<0, 2, 1, 3>(fLow, fHigh),
            Shuffle<1, 3, 0, 3>(fLow, t.c)};
}

/// The inverse of Deinterleaved.
LS_LANES Triple Interleaved(Triple t)
{
    const Floats fEven = Shuffle<0, 2, 0, 2>(t.a, t.b);  // a0 a2 b0 b2
    const Floats fOdd = Shuffle<1, 3, 1, 3>(t.b, t.c);   // b1 b3 c1 c3
    const Floats fMixed = Shuffle<0, 2, 1, 3>(t.c, t.a); // c0 c2 a1 a3
    return {Shuffle<0, 2, 0, 2>(fEven, fMixed), Shuffle<0, 2, 1, 3>(fOdd, fEven),
            Shuffle<1, 3, 1, 3>(fMixed, fOdd)};
}

LS_LANES Triple LoadTriple(const float* pf)
{
    return {Load(pf), Load(pf + COUNT), Load(pf + 2 * COUNT)};
}
LS_LANES void StoreTriple(float* pf, Triple t)
{
    Store(pf, t.a);
    Store(pf + COUNT, t.b);
    Store(pf + 2 * COUNT, t.c);
}

/// 16 integers of 0 to 255 as bytes.
LS_LANES void StoreBytes(unsigned char* pBytes, Ints a, Ints b, Ints c, Ints d)
{
    const __m128i words = _mm_packs_epi32(a.v, b.v);
    const __m128i moreWords = _mm_packs_epi32(c.v, d.v);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(pBytes), _mm_packus_epi16(words, moreWords));
}

/// What every processor of this platform has. Four doubles are two vectors of two.
struct Sse2 {
    struct Doubles {
        __m128d low, high;

        LS_LANES friend Doubles operator+(Doubles a, Doubles b)
        {
            return {_mm_add_pd(a.low, b.low), _mm_add_pd(a.high, b.high)};
        }
        LS_LANES friend Doubles operator-(Doubles a, Doubles b)
        {
            return {_mm_sub_pd(a.low, b.low), _mm_sub_pd(a.high, b.high)};
        }
        LS_LANES friend Doubles operator*(Doubles a, Doubles b)
        {
            return {_mm_mul_pd(a.low, b.low), _mm_mul_pd(a.high, b.high)};
        }
        LS_LANES friend Doubles operator/(Doubles a, Doubles b)
        {
            return {_mm_div_pd(a.low, b.low), _mm_div_pd(a.high, b.high)};
        }
        LS_LANES friend Doubles operator<=(Doubles a, Doubles b)
        {
            return {_mm_cmple_pd(a.low, b.low), _mm_cmple_pd(a.high, b.high)};
        }
        LS_LANES friend Doubles operator&(Doubles a, Doubles b)
        {
            return {_mm_and_pd(a.low, b.low), _mm_and_pd(a.high, b.high)};
        }
        LS_LANES friend Doubles operator|(Doubles a, Doubles b)
        {
            return {_mm_or_pd(a.low, b.low), _mm_or_pd(a.high, b.high)};
        }
    };

    LS_LANES static Doubles Each(double d) { return {_mm_set1_pd(d), _mm_set1_pd(d)}; }
    LS_LANES static void Store(double* pd, Doubles a)
    {
        _mm_storeu_pd(pd, a.low);
        _mm_storeu_pd(pd + 2, a.high);
    }
    LS_LANES static Doubles Load(const double* pd) { return {_mm_loadu_pd(pd), _mm_loadu_pd(pd + 2)}; }
    LS_LANES static Doubles Magnitude(Doubles a)
    {
        return {_mm_andnot_pd(_mm_set1_pd(-0.0), a.low), _mm_andnot_pd(_mm_set1_pd(-0.0), a.high)};
    }
    LS_LANES static Doubles Widened(Floats a)
    {
        return {_mm_cvtps_pd(a.v), _mm_cvtps_pd(_mm_movehl_ps(a.v, a.v))};
    }
    LS_LANES static Floats Rounded(Doubles a)
    {
        return {_mm_movelh_ps(_mm_cvtpd_ps(a.low), _mm_cvtpd_ps(a.high))};
    }
    LS_LANES static Doubles Choose(Doubles mask, Doubles a, Doubles b)
    {
        return {_mm_or_pd(_mm_and_pd(mask.low, a.low), _mm_andnot_pd(mask.low, b.low)),
                _mm_or_pd(_mm_and_pd(mask.high, a.high), _mm_andnot_pd(mask.high, b.high))};
    }
    LS_LANES static Doubles Widened(FloatMask mask)
    {
        return {_mm_castps_pd(_mm_unpacklo_ps(mask.v, mask.v)),
                _mm_castps_pd(_mm_unpackhi_ps(mask.v, mask.v))};
    }

    // Integer arithmetic on the bit patterns of doubles.
    LS_LANES static Doubles AddBits(Doubles a, Doubles b)
    {
        return {AddBits(a.low, b.low), AddBits(a.high, b.high)};
    }
    LS_LANES static Doubles SubtractBits(Doubles a, Doubles b)
    {
        return {SubtractBits(a.low, b.low), SubtractBits(a.high, b.high)};
    }
    template <int COUNT_OF_BITS> LS_LANES static Doubles ShiftBitsRight(Doubles a)
    {
        return {_mm_castsi128_pd(_mm_srli_epi64(_mm_castpd_si128(a.low), COUNT_OF_BITS)),
                _mm_castsi128_pd(_mm_srli_epi64(_mm_castpd_si128(a.high), COUNT_OF_BITS))};
    }
    template <int COUNT_OF_BITS> LS_LANES static Doubles ShiftBitsLeft(Doubles a)
    {
        return {_mm_castsi128_pd(_mm_slli_epi64(_mm_castpd_si128(a.low), COUNT_OF_BITS)),
                _mm_castsi128_pd(_mm_slli_epi64(_mm_castpd_si128(a.high), COUNT_OF_BITS))};
    }

private:
    LS_LANES static __m128d AddBits(__m128d a, __m128d b)
    {
        return _mm_castsi128_pd(_mm_add_epi64(_mm_castpd_si128(a), _mm_castpd_si128(b)));
    }
    LS_LANES static __m128d SubtractBits(__m128d a, __m128d b)
    {
        return _mm_castsi128_pd(_mm_sub_epi64(_mm_castpd_si128(a), _mm_castpd_si128(b)));
    }
};

#ifdef __AVX2__
/// One vector of four doubles.
struct Avx2 {
    struct Doubles {
        __m256d v;

        LS_LANES friend Doubles operator+(Doubles a, Doubles b) { return {_mm256_add_pd(a.v, b.v)}; }
        LS_LANES friend Doubles operator-(Doubles a, Doubles b) { return {_mm256_sub_pd(a.v, b.v)}; }
        LS_LANES friend Doubles operator*(Doubles a, Doubles b) { return {_mm256_mul_pd(a.v, b.v)}; }
        LS_LANES friend Doubles operator/(Doubles a, Doubles b) { return {_mm256_div_pd(a.v, b.v)}; }
        LS_LANES friend Doubles operator<=(Doubles a, Doubles b)
        {
            return {_mm256_cmp_pd(a.v, b.v, _CMP_LE_OS)};
        }
        LS_LANES friend Doubles operator&(Doubles a, Doubles b) { return {_mm256_and_pd(a.v, b.v)}; }
        LS_LANES friend Doubles operator|(Doubles a, Doubles b) { return {_mm256_or_pd(a.v, b.v)}; }
    };

    LS_LANES static Doubles Each(double d) { return {_mm256_set1_pd(d)}; }
    LS_LANES static void Store(double* pd, Doubles a) { _mm256_storeu_pd(pd, a.v); }
    LS_LANES static Doubles Load(const double* pd) { return {_mm256_loadu_pd(pd)}; }
    LS_LANES static Doubles Magnitude(Doubles a) { return {_mm256_andnot_pd(_mm256_set1_pd(-0.0), a.v)}; }
    LS_LANES static Doubles Widened(Floats a) { return {_mm256_cvtps_pd(a.v)}; }
    LS_LANES static Floats Rounded(Doubles a) { return {_mm256_cvtpd_ps(a.v)}; }
    LS_LANES static Doubles Choose(Doubles mask, Doubles a, Doubles b)
    {
        return {_mm256_blendv_pd(b.v, a.v, mask.v)};
    }
    LS_LANES static Doubles Widened(FloatMask mask)
    {
        return {_mm256_castsi256_pd(_mm256_cvtepi32_epi64(_mm_castps_si128(mask.v)))};
    }

    // Integer arithmetic on the bit patterns of doubles.
    LS_LANES static Doubles AddBits(Doubles a, Doubles b)
    {
        return {_mm256_castsi256_pd(_mm256_add_epi64(_mm256_castpd_si256(a.v), _mm256_castpd_si256(b.v)))};
    }
    LS_LANES static Doubles SubtractBits(Doubles a, Doubles b)
    {
        return {_mm256_castsi256_pd(_mm256_sub_epi64(_mm256_castpd_si256(a.v), _mm256_castpd_si256(b.v)))};
    }
    template <int COUNT_OF_BITS> LS_LANES static Doubles ShiftBitsRight(Doubles a)
    {
        return {_mm256_castsi256_pd(_mm256_srli_epi64(_mm256_castpd_si256(a.v), COUNT_OF_BITS))};
    }
    template <int COUNT_OF_BITS> LS_LANES static Doubles ShiftBitsLeft(Doubles a)
    {
        return {_mm256_castsi256_pd(_mm256_slli_epi64(_mm256_castpd_si256(a.v), COUNT_OF_BITS))};
    }
};
#endif

} // namespace LS::Lanes
