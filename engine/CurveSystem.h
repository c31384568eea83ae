// The equations of response recovery: a curve on a logarithmic grid, readings, anchor and smoothness.
//
// A variant of P. Debevec and J. Malik, "Recovering High Dynamic Range Radiance Maps from Photographs",
// SIGGRAPH 1997. Intermediate values are doubles; what is kept as float is rounded when it is stored.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// 256 nodes over a range of 8-bit values, evenly spaced in log(z - nLow + 1).
class LogGrid {
public:
    static constexpr std::int32_t NODES = 256;

    /// Between which nodes a value lies, and how far above the lower one. Rounding can put the upper end of
    /// the range a little above node 255, so that nAbove is 256.
    struct Position {
        std::int32_t nBelow;
        std::int32_t nAbove; ///< equals nBelow on a node
        float fFraction;     ///< 0 on a node
    };

    /// @param nLow,nHigh  0 <= nLow < nHigh <= 255 (asserted)
    LogGrid(std::int32_t nLow, std::int32_t nHigh);

    /// The position of a value, held to the range. What it has behind the point is cut off.
    Position PositionOf(float fValue) const;

    /// The node at which the curve is 0: that of the 128th value, or the last one where the range has fewer.
    std::int32_t AnchorNode() const;

    std::int32_t Low() const { return m_nLow; }
    std::int32_t High() const { return m_nHigh; }

private:
    std::int32_t m_nLow;
    std::int32_t m_nHigh;
    float m_fStep; ///< from node to node, in natural logarithms
};

/// The curve at a position of the grid, between nodes by straight lines. Positions above the grid count as
/// its last node.
/// @param nodes  at least 256 values
float CurveAt(std::span<const double> nodes, const LogGrid::Position& position);

/// One overdetermined system for the log radiance at each node of the grid, and for the log radiances of the
/// samples where these aren't known yet. Fill it with readings first, then anchor, then smoothness.
class CurveSystem {
public:
    /// @param nReadings   how often AddReading will be called, at most
    /// @param nUnknown    how many samples have an unknown log radiance
    CurveSystem(const LogGrid& grid, std::int32_t nReadings, std::int32_t nUnknown);

    /// fWeight x (curve(fValue) - radiance of nSample) = fWeight x dLogRadiance; without nSample the radiance
    /// is known and part of dLogRadiance.
    void AddReading(float fValue, float fWeight, double dLogRadiance, std::optional<std::int32_t> nSample);

    /// Fixes the curve to 0 at the anchor node, since the readings leave a constant open.
    void AddAnchor();

    /// Asks for small second differences, in proportion to the trust in the values of the nodes.
    /// @param dBiweightEnergy  sum of squares of the trust table; sets these rows into proportion with the
    ///                         weights of the readings so far
    void AddSmoothness(float fStrength, double dBiweightEnergy);

    /// Solves the system, once. @return 0, or LAPACK's INFO
    std::int32_t Solve();

    std::span<const double> Nodes() const { return std::span(m_vB).first(LogGrid::NODES); }
    double LogRadiance(std::int32_t nSample) const;

    // What stands in the system, for whoever wants to look: row by column, and the right-hand side.
    std::int32_t Rows() const { return m_nRows; }
    std::int32_t Columns() const { return m_nColumns; }
    double At(std::int32_t nRow, std::int32_t nColumn) const { return m_vA[Index(nRow, nColumn)]; }
    double RightSide(std::int32_t nRow) const { return m_vB[static_cast<std::size_t>(nRow)]; }

private:
    std::size_t Index(std::int32_t nRow, std::int32_t nColumn) const;
    void AddToNode(std::int32_t nNode, double dShare);

    LogGrid m_grid;
    std::int32_t m_nRows;
    std::int32_t m_nColumns;
    std::int32_t m_nRow = 0; ///< the next one to fill
    float m_fWeightEnergy = 0;
    std::vector<double> m_vA; ///< column by column
    std::vector<double> m_vB; ///< the right-hand side, then the solution
};
