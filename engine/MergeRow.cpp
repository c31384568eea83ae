// One row of the merge: the definition, and vectors of pixels for the processors that have them.
#include "engine/MergeRow.h"

#include "Util/CpuFeatures.h"

#include <cmath>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace {

// Limits that every exposure of a photograph lies between.
constexpr float BRIGHTER_THAN_ALL = 1000000.0F;
constexpr float DARKER_THAN_ALL = -1000000.0F;

constexpr float NO_WEIGHT = 0.00001F; // a sum of weights below this means that no reading was usable

struct Reading {
    unsigned char r = 0, g = 0, b = 0;
};

float CurveValue(const MergeTables& tables, std::size_t nChannel, unsigned char z)
{
    return tables.channels[nChannel][z].f[nChannel];
}

float Weight(const MergeTables& tables, unsigned char z)
{
    return tables.channels[0][z].f[MergeTables::WEIGHT];
}

/// Collects what the images say about one pixel.
class PixelSum {
public:
    void Add(const MergeTables& tables, Reading z, float fExposure)
    {
        RememberExtremes(tables, z, fExposure);
        const float fWeight = (Weight(tables, z.r) + Weight(tables, z.g) + Weight(tables, z.b)) / 3.0F;
        m_fRed += CurveValue(tables, 0, z.r) * fWeight / fExposure;
        m_fGreen += CurveValue(tables, 1, z.g) * fWeight / fExposure;
        m_fBlue += CurveValue(tables, 2, z.b) * fWeight / fExposure;
        m_fWeight += fWeight;
    }

    void Finish(const MergeTables& tables, float* pfPixel)
    {
        if (!HasWeight())
            FallBack(tables);
        const bool bUsable = HasWeight();
        pfPixel[0] = bUsable ? m_fRed / m_fWeight : 0.0F;
        pfPixel[1] = bUsable ? m_fGreen / m_fWeight : 0.0F;
        pfPixel[2] = bUsable ? m_fBlue / m_fWeight : 0.0F;
    }

private:
    bool HasWeight() const { return !(std::fabs(m_fWeight) < NO_WEIGHT); }

    void RememberExtremes(const MergeTables& tables, Reading z, float fExposure)
    {
        if ((z.r > tables.nHigh || z.g > tables.nHigh || z.b > tables.nHigh) && fExposure < m_fSaturatedE) {
            m_fSaturatedE = fExposure;
            m_saturated = z;
        }
        if ((z.r < tables.nLow || z.g < tables.nLow || z.b < tables.nLow) && fExposure > m_fDarkE) {
            m_fDarkE = fExposure;
            m_dark = z;
        }
    }

    /// Burnt out everywhere: the shortest exposure knows best. Black everywhere: the longest does.
    void FallBack(const MergeTables& tables)
    {
        if (m_fDarkE > DARKER_THAN_ALL)
            TakeOnly(tables, m_dark, m_fDarkE);
        if (m_fSaturatedE < BRIGHTER_THAN_ALL)
            TakeOnly(tables, m_saturated, m_fSaturatedE);
    }

    void TakeOnly(const MergeTables& tables, Reading z, float fExposure)
    {
        m_fRed = CurveValue(tables, 0, z.r) / fExposure;
        m_fGreen = CurveValue(tables, 1, z.g) / fExposure;
        m_fBlue = CurveValue(tables, 2, z.b) / fExposure;
        m_fWeight = 1.0F;
    }

    float m_fRed = 0, m_fGreen = 0, m_fBlue = 0, m_fWeight = 0;
    float m_fSaturatedE = BRIGHTER_THAN_ALL;
    float m_fDarkE = DARKER_THAN_ALL;
    Reading m_saturated, m_dark;
};

using Rows = std::span<const unsigned char* const>;

void MergePixels(const MergeTables& tables, Rows vpRows, std::size_t nFirst, std::size_t nEnd, float* pfRow)
{
    for (std::size_t x = nFirst; x < nEnd; ++x) {
        PixelSum sum;
        for (std::size_t i = 0; i < vpRows.size(); ++i) {
            const unsigned char* const pPixel = vpRows[i] + 4 * x;
            sum.Add(tables, {pPixel[1], pPixel[2], pPixel[3]}, tables.vfExposures[i]);
        }
        sum.Finish(tables, pfRow + 3 * x);
    }
}

#if defined(__x86_64__)

// Both roads below take a group of pixels through all images. What they leave to MergePixels is the end of
// the row, and pixels without a usable reading, which are rare. The quotients stay real divisions: a product
// with 1 / E has other bits. The division by 3 and those by E are done for all pixels of a group at once.
//
// 24 MP of 5 images: plain 623 ms, SSE2 248 ms, AVX2 182 ms. Passing over groups without weight gains nothing
// on photographs.

/// Three curve values and the sum of weights of a pixel of a source row. The zeros added to a curve value
/// could only turn -0 into 0, which no sum that starts at 0 can tell apart.
inline __m128 Lookup(const MergeTables& tables, const unsigned char* pPixel)
{
    const __m128 red = _mm_load_ps(tables.channels[0][pPixel[1]].f.data());
    const __m128 green = _mm_load_ps(tables.channels[1][pPixel[2]].f.data());
    const __m128 blue = _mm_load_ps(tables.channels[2][pPixel[3]].f.data());
    return red + green + blue;
}

std::size_t MergeGroupsSse2(const MergeTables& tables, Rows vpRows, std::size_t nWidth, float* pfRow)
{
    constexpr std::size_t GROUP = 4;
    const __m128 noWeight = _mm_set1_ps(NO_WEIGHT);
    const __m128 signs = _mm_set1_ps(-0.0F);
    const __m128 three = _mm_set1_ps(3.0F);
    std::size_t x = 0;
    // A store writes four floats for a pixel, so one more pixel has to follow the group.
    for (; x + GROUP < nWidth; x += GROUP) {
        __m128 sumRed{}, sumGreen{}, sumBlue{}, sumWeight{};
        for (std::size_t i = 0; i < vpRows.size(); ++i) {
            const unsigned char* const pPixels = vpRows[i] + 4 * x;
            const __m128 exposure = _mm_set1_ps(tables.vfExposures[i]);
            __m128 red = Lookup(tables, pPixels);
            __m128 green = Lookup(tables, pPixels + 4);
            __m128 blue = Lookup(tables, pPixels + 8);
            __m128 weight = Lookup(tables, pPixels + 12);
            _MM_TRANSPOSE4_PS(red, green, blue, weight); // from pixels to channels
            weight /= three;
            sumRed += red * weight / exposure;
            sumGreen += green * weight / exposure;
            sumBlue += blue * weight / exposure;
            sumWeight += weight;
        }
        __m128 pixel0 = sumRed / sumWeight;
        __m128 pixel1 = sumGreen / sumWeight;
        __m128 pixel2 = sumBlue / sumWeight;
        __m128 pixel3{};
        _MM_TRANSPOSE4_PS(pixel0, pixel1, pixel2, pixel3);
        float* const pfPixels = pfRow + 3 * x;
        _mm_storeu_ps(pfPixels, pixel0);
        _mm_storeu_ps(pfPixels + 3, pixel1);
        _mm_storeu_ps(pfPixels + 6, pixel2);
        _mm_storeu_ps(pfPixels + 9, pixel3);
        if (_mm_movemask_ps(_mm_cmplt_ps(_mm_andnot_ps(signs, sumWeight), noWeight)) != 0)
            MergePixels(tables, vpRows, x, x + GROUP, pfRow);
    }
    return x;
}

/// The pixel in the low half, and the fourth behind it in the high half.
[[gnu::target("avx2")]] inline __m256 LookupPair(const MergeTables& tables, const unsigned char* pPixel)
{
    return _mm256_insertf128_ps(_mm256_castps128_ps256(Lookup(tables, pPixel)), Lookup(tables, pPixel + 16),
                                1);
}

/// Transposes the 4 x 4 floats of the low halves, and those of the high halves.
[[gnu::target("avx2")]] inline void TransposeHalves(__m256& a, __m256& b, __m256& c, __m256& d)
{
    const __m256 lowAB = _mm256_unpacklo_ps(a, b);
    const __m256 highAB = _mm256_unpackhi_ps(a, b);
    const __m256 lowCD = _mm256_unpacklo_ps(c, d);
    const __m256 highCD = _mm256_unpackhi_ps(c, d);
    a = _mm256_shuffle_ps(lowAB, lowCD, 0x44);
    b = _mm256_shuffle_ps(lowAB, lowCD, 0xEE);
    c = _mm256_shuffle_ps(highAB, highCD, 0x44);
    d = _mm256_shuffle_ps(highAB, highCD, 0xEE);
}

[[gnu::target("avx2")]] std::size_t MergeGroupsAvx2(const MergeTables& tables, Rows vpRows,
                                                    std::size_t nWidth, float* pfRow)
{
    constexpr std::size_t GROUP = 8;
    const __m256 noWeight = _mm256_set1_ps(NO_WEIGHT);
    const __m256 signs = _mm256_set1_ps(-0.0F);
    const __m256 three = _mm256_set1_ps(3.0F);
    std::size_t x = 0;
    for (; x + GROUP < nWidth; x += GROUP) {
        __m256 sumRed{}, sumGreen{}, sumBlue{}, sumWeight{};
        for (std::size_t i = 0; i < vpRows.size(); ++i) {
            const unsigned char* const pPixels = vpRows[i] + 4 * x;
            const __m256 exposure = _mm256_set1_ps(tables.vfExposures[i]);
            __m256 red = LookupPair(tables, pPixels);
            __m256 green = LookupPair(tables, pPixels + 4);
            __m256 blue = LookupPair(tables, pPixels + 8);
            __m256 weight = LookupPair(tables, pPixels + 12);
            TransposeHalves(red, green, blue, weight); // from pixels to channels
            weight /= three;
            sumRed += red * weight / exposure;
            sumGreen += green * weight / exposure;
            sumBlue += blue * weight / exposure;
            sumWeight += weight;
        }
        __m256 pixel04 = sumRed / sumWeight;
        __m256 pixel15 = sumGreen / sumWeight;
        __m256 pixel26 = sumBlue / sumWeight;
        __m256 pixel37{};
        TransposeHalves(pixel04, pixel15, pixel26, pixel37);
        float* const pfPixels = pfRow + 3 * x;
        _mm_storeu_ps(pfPixels, _mm256_castps256_ps128(pixel04));
        _mm_storeu_ps(pfPixels + 3, _mm256_castps256_ps128(pixel15));
        _mm_storeu_ps(pfPixels + 6, _mm256_castps256_ps128(pixel26));
        _mm_storeu_ps(pfPixels + 9, _mm256_castps256_ps128(pixel37));
        _mm_storeu_ps(pfPixels + 12, _mm256_extractf128_ps(pixel04, 1));
        _mm_storeu_ps(pfPixels + 15, _mm256_extractf128_ps(pixel15, 1));
        _mm_storeu_ps(pfPixels + 18, _mm256_extractf128_ps(pixel26, 1));
        _mm_storeu_ps(pfPixels + 21, _mm256_extractf128_ps(pixel37, 1));
        if (_mm256_movemask_ps(_mm256_cmp_ps(_mm256_andnot_ps(signs, sumWeight), noWeight, _CMP_LT_OQ)) != 0)
            MergePixels(tables, vpRows, x, x + GROUP, pfRow);
    }
    return x;
}

#endif

/// Merges as many pixels from the row's start as fill whole groups. @return their number
std::size_t MergeGroups(const MergeTables& tables, Rows vpRows, std::size_t nWidth, float* pfRow)
{
#if defined(__x86_64__)
    switch (LS::Util::BestInstructionSet()) {
    case LS::Util::InstructionSet::Avx2:
        return MergeGroupsAvx2(tables, vpRows, nWidth, pfRow);
    case LS::Util::InstructionSet::Baseline:
        return MergeGroupsSse2(tables, vpRows, nWidth, pfRow);
    case LS::Util::InstructionSet::Plain:
        break;
    }
#endif
    return 0;
}

} // namespace

MergeTables::MergeTables(const std::vector<float>& vfImageExposures, const std::vector<float*>& vafCurves,
                         const std::vector<float>& vfWeights, std::int32_t nLowest, std::int32_t nHighest)
    : channels{}, vfExposures(vfImageExposures), nLow(nLowest), nHigh(nHighest)
{
    for (std::size_t c = 0; c < channels.size(); ++c)
        for (std::size_t z = 0; z < channels[c].size(); ++z) {
            channels[c][z].f[c] = vafCurves[c][z];
            channels[c][z].f[WEIGHT] = vfWeights[z];
        }
}

void MergeRow(const MergeTables& tables, std::span<const unsigned char* const> vpRows, std::int32_t nWidth,
              float* pfRow)
{
    const auto nPixels = static_cast<std::size_t>(nWidth);
    MergePixels(tables, vpRows, MergeGroups(tables, vpRows, nPixels, pfRow), nPixels, pfRow);
}

namespace reference {

void MergeRow(const MergeTables& tables, std::span<const unsigned char* const> vpRows, std::int32_t nWidth,
              float* pfRow)
{
    MergePixels(tables, vpRows, 0, static_cast<std::size_t>(nWidth), pfRow);
}

} // namespace reference
