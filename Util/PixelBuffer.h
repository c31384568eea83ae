// 8-bit pixels on their way to a wxImage.
#pragma once

#include "Util/LargeBuffer.h"

namespace LS::Util {

/// wxImage frees its pixels with free(), so each buffer that may end in one comes from malloc.
using PixelBuffer = LargeBuffer<unsigned char>;

/// @throws std::bad_alloc
inline PixelBuffer MakePixelBuffer(std::size_t nBytes)
{
    return MakeLargeBuffer<unsigned char>(nBytes);
}

} // namespace LS::Util
