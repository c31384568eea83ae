// Builds and solves the equations of response recovery.
#include "engine/CurveSystem.h"

#include "Util/Assertion.h"
#include "engine/LeastSquares.h"
#include "engine/RecoveryTables.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::int32_t LAST_NODE = LogGrid::NODES - 1;
constexpr std::int32_t ANCHOR_VALUES =
    128; // the anchor stands for this many values above the range's low end
constexpr std::int32_t SMOOTH_ROWS = 253;
// Anchor and smoothness; three rows at the end stay zero.
constexpr std::int32_t FIXED_ROWS = 257;

LogGrid::Position PositionOfLog(float fLog, float fStep)
{
    const auto fNode = static_cast<float>(static_cast<double>(fLog) / fStep);
    const float fBelow = std::floor(fNode);
    return {static_cast<std::int32_t>(fBelow), static_cast<std::int32_t>(std::ceil(fNode)), fNode - fBelow};
}

} // namespace

LogGrid::LogGrid(std::int32_t nLow, std::int32_t nHigh)
    : m_nLow(nLow), m_nHigh(nHigh),
      m_fStep(static_cast<float>(std::log(static_cast<double>(nHigh - nLow + 1)) / LAST_NODE))
{
    LS_ASSERT(0 <= nLow && nLow < nHigh && nHigh < NODES);
}

LogGrid::Position LogGrid::PositionOf(float fValue) const
{
    const double dAboveLow = std::max(0.0, std::min<double>(m_nHigh, fValue) - m_nLow);
    return PositionOfLog(LogTable()[static_cast<std::size_t>(dAboveLow + 1.0) - 1], m_fStep);
}

std::int32_t LogGrid::AnchorNode() const
{
    const double dNode = std::floor(std::log(static_cast<double>(ANCHOR_VALUES)) / m_fStep);
    return static_cast<std::int32_t>(std::min<double>(dNode, LAST_NODE));
}

float CurveAt(std::span<const double> nodes, const LogGrid::Position& position)
{
    const auto node = [nodes](std::int32_t n) {
        return nodes[static_cast<std::size_t>(std::min(n, LAST_NODE))];
    };
    const double dFraction = position.fFraction;
    return static_cast<float>(dFraction * node(position.nAbove) + (1 - dFraction) * node(position.nBelow));
}

CurveSystem::CurveSystem(const LogGrid& grid, std::int32_t nReadings, std::int32_t nUnknown)
    : m_grid(grid), m_nRows(nReadings + FIXED_ROWS), m_nColumns(LogGrid::NODES + nUnknown),
      m_vA(static_cast<std::size_t>(m_nRows) * static_cast<std::size_t>(m_nColumns)),
      m_vB(static_cast<std::size_t>(m_nRows))
{
}

std::size_t CurveSystem::Index(std::int32_t nRow, std::int32_t nColumn) const
{
    return static_cast<std::size_t>(nColumn) * static_cast<std::size_t>(m_nRows) +
           static_cast<std::size_t>(nRow);
}

void CurveSystem::AddToNode(std::int32_t nNode, double dShare)
{
    if (nNode <= LAST_NODE) // the column behind the grid belongs to a sample
        m_vA[Index(m_nRow, nNode)] += dShare;
}

void CurveSystem::AddReading(float fValue, float fWeight, double dLogRadiance,
                             std::optional<std::int32_t> nSample)
{
    const double dWeight = fWeight;
    m_fWeightEnergy = static_cast<float>(m_fWeightEnergy + dWeight * dWeight);

    const LogGrid::Position position = m_grid.PositionOf(fValue);
    const double dFraction = position.fFraction;
    AddToNode(position.nBelow, (1 - dFraction) * dWeight);
    AddToNode(position.nAbove, dFraction * dWeight);
    if (nSample)
        m_vA[Index(m_nRow, LogGrid::NODES + *nSample)] = -dWeight;
    m_vB[static_cast<std::size_t>(m_nRow)] = dLogRadiance * dWeight;
    ++m_nRow;
}

void CurveSystem::AddAnchor()
{
    AddToNode(m_grid.AnchorNode(), 1.0);
    ++m_nRow;
}

void CurveSystem::AddSmoothness(float fStrength, double dBiweightEnergy)
{
    const double dNodesPerValue = 255.0 / (m_grid.High() - m_grid.Low());
    const auto fScale = static_cast<float>(std::sqrt(m_fWeightEnergy / dBiweightEnergy));
    for (std::int32_t k = 0; k < SMOOTH_ROWS; ++k, ++m_nRow) {
        const auto z = static_cast<std::size_t>(k / dNodesPerValue + 1.0 + m_grid.Low());
        const auto fWeight = static_cast<float>(BiweightTable()[z] * fScale);
        const double dSide = static_cast<double>(fStrength) * fWeight;
        m_vA[Index(m_nRow, k)] = dSide;
        m_vA[Index(m_nRow, k + 1)] = -2 * dSide;
        m_vA[Index(m_nRow, k + 2)] = dSide;
    }
}

std::int32_t CurveSystem::Solve()
{
    return SolveLeastSquares(m_vA, m_vB, m_nRows, m_nColumns);
}

double CurveSystem::LogRadiance(std::int32_t nSample) const
{
    return m_vB[static_cast<std::size_t>(LogGrid::NODES) + static_cast<std::size_t>(nSample)];
}
