// How a photograph is turned so that it stands upright.
#pragma once

#include <cstdint>

class wxImage;

/// What makes a stored picture upright, by the numbers of Exif's and TIFF's tag 274.
enum class Orientation : std::uint8_t {
    Upright = 1,
    MirrorColumns, ///< left becomes right
    HalfTurn,
    MirrorRows, ///< top becomes bottom
    Transpose,
    QuarterRight,
    AntiTranspose, ///< transposed along the other diagonal
    QuarterLeft,
};

/// A tag's value; a number that has no meaning counts as upright.
constexpr Orientation OrientationOfTag(int nValue)
{
    return nValue >= 1 && nValue <= 8 ? static_cast<Orientation>(nValue) : Orientation::Upright;
}

/// Whether the upright picture is as wide as the stored one is high.
constexpr bool ExchangesSides(Orientation orientation)
{
    return orientation >= Orientation::Transpose;
}

/// Turns a picture with its alpha plane and mask colour. It works in place unless the sides are exchanged.
/// @param image  valid, and not shared
/// @return false if memory lacks, which leaves the picture as it was
bool TurnUpright(wxImage& image, Orientation orientation);
