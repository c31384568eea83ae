// Gamma, cap and truncation as one table that is exact for every float.
//
// The byte of a channel value depends on that value alone, and rises with it on the line as on the power
// branch of the curve (where they meet it may fall). So a branch is known by the floats at which its byte
// rises. The table cuts the floats into cells of equal exponent and leading bits of the mantissa, so narrow
// that at most one rise falls into each, and keeps for a cell its first byte and the place of the rise.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

struct GammaCurve;

/// What a kernel needs of the table.
///
/// A value v, first brought between fLowest and 1, has the byte
///
///     (pnEntries[cell] + v's bits within the cell) >> BITS
///
/// with cell = v's bits >> BITS, less nFirstCell, and one more where v lies above fLineEnd: the cell in which
/// the branches meet has two entries. An entry is the cell's first byte << BITS, plus what carries the sum
/// into the next byte from the rise on.
struct ByteCells {
    static constexpr int BITS = 15;
    static constexpr std::int32_t SIZE = 1 << BITS; ///< floats in a cell

    const std::int32_t* pnEntries;
    std::int32_t nFirstCell;
    float fLowest; ///< up to here all bytes are 0, as are those of negative values and NaN
    float fLineEnd;
};

class ByteTable {
public:
    /// @return none for a curve so steep that a cell would hold two rises, which no slider position has
    static std::optional<ByteTable> Make(const GammaCurve& curve);

    /// Valid as long as the table.
    ByteCells Cells() const { return {m_vnEntries.data(), m_nFirstCell, m_fLowest, m_fLineEnd}; }

private:
    ByteTable() = default;

    std::vector<std::int32_t> m_vnEntries;
    std::int32_t m_nFirstCell = 0;
    float m_fLowest = 0, m_fLineEnd = 0;
};
