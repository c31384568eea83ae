// The one call into LAPACK.
#include "engine/LeastSquares.h"

#include "Util/Assertion.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

extern "C" {
void dgelss_(const std::int32_t* pnRows, const std::int32_t* pnColumns, const std::int32_t* pnRightSides,
             double* pdA, const std::int32_t* pnLeadingA, double* pdB, const std::int32_t* pnLeadingB,
             double* pdSingular, const double* pdCondition, std::int32_t* pnRank, double* pdWork,
             const std::int32_t* pnWork, std::int32_t* pnInfo);
void openblas_set_num_threads(int nThreads);
}

namespace {

constexpr double MACHINE_PRECISION = -1.0; // any negative condition number asks for it
constexpr std::int32_t INFO_ARGUMENT_A = -4, INFO_ARGUMENT_B = -6;

/// LAPACK asks for at least 3 min + max(2 min, max); fifteen times that leaves room for its blocked roads.
std::int32_t WorkSize(std::int32_t nRows, std::int32_t nColumns)
{
    const std::int32_t nSmaller = std::min(nRows, nColumns);
    return (std::max(2 * nSmaller, std::max(nRows, nColumns)) + 3 * nSmaller) * 15;
}

bool AllFinite(std::span<const double> values)
{
    return std::all_of(values.begin(), values.end(), [](double d) { return std::isfinite(d); });
}

/// The engine runs on its caller's thread alone; the library would start one for each processor.
void HoldToOneThread()
{
    static const bool bHeld = (openblas_set_num_threads(1), true);
    static_cast<void>(bHeld);
}

} // namespace

std::int32_t SolveLeastSquares(std::span<double> vA, std::span<double> vB, std::int32_t nRows,
                               std::int32_t nColumns)
{
    LS_ASSERT(nColumns > 0 && nRows >= nColumns);
    LS_ASSERT(vA.size() == static_cast<std::size_t>(nRows) * static_cast<std::size_t>(nColumns));
    LS_ASSERT(vB.size() == static_cast<std::size_t>(nRows));
    if (!AllFinite(vA))
        return INFO_ARGUMENT_A;
    if (!AllFinite(vB))
        return INFO_ARGUMENT_B;

    HoldToOneThread();
    const std::int32_t nRightSides = 1;
    const std::int32_t nWork = WorkSize(nRows, nColumns);
    std::vector<double> vSingular(static_cast<std::size_t>(nColumns));
    std::vector<double> vWork(static_cast<std::size_t>(nWork));
    std::int32_t nRank = 0, nInfo = 0;
    dgelss_(&nRows, &nColumns, &nRightSides, vA.data(), &nRows, vB.data(), &nRows, vSingular.data(),
            &MACHINE_PRECISION, &nRank, vWork.data(), &nWork, &nInfo);
    return nInfo;
}
