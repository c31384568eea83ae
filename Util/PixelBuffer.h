// 8-bit pixels on their way to a wxImage.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

namespace LS::Util {

struct FreeDeleter {
    void operator()(void* p) const noexcept { std::free(p); }
};

/// wxImage frees its pixels with free(), so each buffer that may end in one comes from malloc.
using PixelBuffer = std::unique_ptr<unsigned char[], FreeDeleter>;

/// @throws std::bad_alloc
inline PixelBuffer MakePixelBuffer(std::size_t nBytes)
{
    PixelBuffer pBuffer(static_cast<unsigned char*>(std::malloc(nBytes)));
    if (!pBuffer)
        throw std::bad_alloc();
    return pBuffer;
}

} // namespace LS::Util
