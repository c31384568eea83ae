// Exposures, confidence in pixel values, and one row by itself.
#include "engine/ExposureMerge.h"

#include "Util/Assertion.h"
#include "engine/MergeRow.h"

#include <cstddef>

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
    const MergeTables tables(vfExposures, vafCurves, vfWeights, nLow, nHigh);
    auto pfRow = std::make_unique_for_overwrite<float[]>(3 * static_cast<std::size_t>(nWidth));
    MergeRow(tables, vRows, nWidth, pfRow.get());
    return pfRow;
}
