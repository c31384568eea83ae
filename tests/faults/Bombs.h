// Small files that would keep a decoder busy for long.
#pragma once

#include "tests/support/TempFolder.h"

namespace LS::Tests {

/// A PNG of 64 x 64 pixels with many megabytes of zeros behind them, packed to a thousandth.
Bytes PngOfTooMuch(int nMegabytes);

/// A TIFF of 16 columns whose fifty thousand tiles are 65536 wide, and all the same bytes.
Bytes TiffOfLargeTiles();

} // namespace LS::Tests
