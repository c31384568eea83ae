// One row of the merge: the definition. The kernel is in lanes/MergeKernel-inl.h.
#include "engine/MergeRow.h"

#include "engine/lanes/Kernels.h"

#include <cmath>

namespace {

// Limits that every exposure of a photograph lies between.
constexpr float BRIGHTER_THAN_ALL = 1000000.0F;
constexpr float DARKER_THAN_ALL = -1000000.0F;

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
    bool HasWeight() const { return !(std::fabs(m_fWeight) < MergeTables::NO_WEIGHT); }

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
    const auto* pKernels = LS::Lanes::Kernels();
    const std::size_t nDone = pKernels ? pKernels->MergeRow(tables, vpRows, nPixels, pfRow) : 0;
    reference::MergePixels(tables, vpRows, nDone, nPixels, pfRow);
}

namespace reference {

void MergePixels(const MergeTables& tables, std::span<const unsigned char* const> vpRows, std::size_t nFirst,
                 std::size_t nEnd, float* pfRow)
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

} // namespace reference
