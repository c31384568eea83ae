// Channel values to bytes by a table. The plain twin is in DisplayCurve.cpp, as is what makes the table.
#pragma once

#include "engine/ByteTable.h"
#include "engine/lanes/Kernels.h"
#include "engine/lanes/Lanes.h"

namespace LS::Lanes {

template <class L> class ToBytesKernel {
public:
    /// See ToneKernels::ToBytes.
    static std::size_t Run(const float* pfValues, std::size_t nValues, const ByteCells& cells,
                           unsigned char* pBytes)
    {
        constexpr std::size_t STEP = 4 * COUNT;
        const std::size_t nWhole = nValues - nValues % STEP;
        for (std::size_t i = 0; i < nWhole; i += STEP)
            StoreBytes(pBytes + i, Looked(pfValues + i, cells), Looked(pfValues + i + COUNT, cells),
                       Looked(pfValues + i + 2 * COUNT, cells), Looked(pfValues + i + 3 * COUNT, cells));
        return nWhole;
    }

private:
    /// See ByteCells.
    LS_LANES static Ints Looked(const float* pfValues, const ByteCells& cells)
    {
        const Floats fValue = Min(Max(Load(pfValues), Each(cells.fLowest)), Each(1.0F));
        const Ints nBits = BitPattern(fValue);
        // A mask that holds is -1.
        const Ints nCell = ShiftRight<ByteCells::BITS>(nBits) - Each(cells.nFirstCell) -
                           AsInts(fValue > Each(cells.fLineEnd));
        const Ints nInCell = nBits & Each(ByteCells::SIZE - 1);
        return ShiftRight<ByteCells::BITS>(Gather(cells.pnEntries, nCell) + nInCell);
    }
};

} // namespace LS::Lanes
