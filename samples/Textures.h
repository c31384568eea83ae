// The patterned surfaces: each function maps a place on an object, in metres, to a reflectance.
#pragma once

#include "samples/Vec3.h"

#include <cstdint>

namespace LS::Samples {

Colour WallpaperColour(double along, double height);
Colour WoodColour(double along, double across, std::uint32_t board, const Colour& dark, const Colour& light);

/// Herringbone parquet.
Colour ParquetColour(double x, double z);

/// @param u, v  -1..1 over the rug
Colour RugColour(double u, double v);

/// A painted landscape. @param u, v  0..1 from the lower left
Colour PaintingColour(double u, double v, std::uint32_t which);

/// A test chart of 24 patches in 4 rows of 6, rows from the top. @param u, v  0..1 from the upper left
Colour ChartColour(double u, double v);

/// The back of a book. @param u, v  -1..1 across and up its spine
Colour BookColour(double u, double v, std::uint32_t book);

/// A house front. @param u  metres along it  @param v  metres above the street
Colour FacadeColour(double u, double v, std::uint32_t house);

/// Cobbles. @param u, v  metres
Colour PavingColour(double u, double v);

} // namespace LS::Samples
