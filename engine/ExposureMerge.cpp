// The merge of one row, pixel by pixel.
#include "engine/ExposureMerge.h"

#include "Util/Assertion.h"

#include <cmath>
#include <cstddef>

namespace {

// Limits that every exposure of a photograph lies between.
constexpr float BRIGHTER_THAN_ALL = 1000000.0F;
constexpr float DARKER_THAN_ALL = -1000000.0F;

constexpr float NO_WEIGHT = 0.00001F; // a sum of weights below this means that no reading was usable

struct Reading {
    unsigned char r = 0, g = 0, b = 0;
};

struct MergeTables {
    const float* pfRed;
    const float* pfGreen;
    const float* pfBlue;
    const float* pfWeights;
    std::int32_t nLow, nHigh;
};

/// Collects what the images say about one pixel.
class PixelSum {
public:
    void Add(const MergeTables& tables, Reading z, float fExposure)
    {
        RememberExtremes(tables, z, fExposure);
        const float fWeight = (tables.pfWeights[z.r] + tables.pfWeights[z.g] + tables.pfWeights[z.b]) / 3.0F;
        m_fRed += tables.pfRed[z.r] * fWeight / fExposure;
        m_fGreen += tables.pfGreen[z.g] * fWeight / fExposure;
        m_fBlue += tables.pfBlue[z.b] * fWeight / fExposure;
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
        m_fRed = tables.pfRed[z.r] / fExposure;
        m_fGreen = tables.pfGreen[z.g] / fExposure;
        m_fBlue = tables.pfBlue[z.b] / fExposure;
        m_fWeight = 1.0F;
    }

    float m_fRed = 0, m_fGreen = 0, m_fBlue = 0, m_fWeight = 0;
    float m_fSaturatedE = BRIGHTER_THAN_ALL;
    float m_fDarkE = DARKER_THAN_ALL;
    Reading m_saturated, m_dark;
};

} // namespace

bool ExposureList(const std::vector<float>& vfShutters, const std::vector<float>& vfStops,
                  std::vector<float>& vfExposures)
{
    LS_ASSERT(vfShutters.size() > 0);
    LS_ASSERT(vfShutters.size() == vfStops.size());
    for (std::size_t i = 0; i < vfShutters.size(); ++i)
        vfExposures.push_back((vfShutters[i] * 100.0F) / (vfStops[i] * vfStops[i] * 12.07488F));
    return true;
}

bool BuildWeightTable(std::vector<float>& vfWeights)
{
    constexpr float DEAD_ZONE = 0.06F;
    const auto append = [&vfWeights](int i) {
        const auto fWeight = static_cast<float>(i / 127.0);
        vfWeights.push_back(fWeight < DEAD_ZONE ? 0.0F : fWeight);
    };
    for (int i = 0; i <= 127; ++i)
        append(i);
    for (int i = 127; i >= 0; --i)
        append(i);
    return true;
}

bool FindWeightRange(const std::vector<float>& vfWeights, std::int32_t* pnLow, std::int32_t* pnHigh)
{
    *pnLow = 0;
    while (!(vfWeights[static_cast<std::size_t>(*pnLow)] > 0))
        ++*pnLow;
    *pnHigh = static_cast<std::int32_t>(vfWeights.size()) - 1;
    while (!(vfWeights[static_cast<std::size_t>(*pnHigh)] > 0))
        --*pnHigh;
    return true;
}

std::unique_ptr<float[]> MergeRow(const std::vector<const unsigned char*>& vRows, std::int32_t nWidth,
                                  std::int32_t nChannels, const std::vector<float>& vfExposures,
                                  const std::vector<float*>& vafCurves, const std::vector<float>& vfWeights,
                                  std::int32_t nLow, std::int32_t nHigh)
{
    LS_ASSERT(nChannels == 3);
    const MergeTables tables{vafCurves[0], vafCurves[1], vafCurves[2], vfWeights.data(), nLow, nHigh};
    const auto nPixels = static_cast<std::size_t>(nWidth);
    auto pfRow = std::make_unique_for_overwrite<float[]>(nPixels * 3);
    for (std::size_t x = 0; x < nPixels; ++x) {
        PixelSum sum;
        for (std::size_t i = 0; i < vRows.size(); ++i) {
            const unsigned char* const pPixel = vRows[i] + 4 * x;
            sum.Add(tables, {pPixel[1], pPixel[2], pPixel[3]}, vfExposures[i]);
        }
        sum.Finish(tables, pfRow.get() + 3 * x);
    }
    return pfRow;
}
