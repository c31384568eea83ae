// The flat pixel record that the 8-bit TIFF writer works on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

/// A block of pixels. All code reaches the pixels through this record.
struct ImageHandle {
    unsigned char* pPixels; ///< start of the block, which never moves
    std::size_t nBytes;     ///< its size
};

/// A picture whose samples state their own depth. It owns its handle but frees nothing by itself.
///
/// | bitsPerPixel | samples                                   |
/// |--------------|-------------------------------------------|
/// | 24, 48, 96   | R G B of 8, 16 bits or 32-bit float       |
/// | 32, 64, 128  | the same with A in front, or after them   |
///
/// Samples of several bytes are in the machine's order and stand at any address.
struct RawImage {
    std::int32_t width;
    std::int32_t height;
    std::int32_t bytesPerLine; ///< from the start of one row to that of the next
    std::int32_t bitsPerPixel;
    std::uint32_t dataSize; ///< bytes in use, normally bytesPerLine x height; the block may be larger
    ImageHandle* data;      ///< null while there are no pixels
};

/// Takes a block of zeros straight from the system. Pages that nobody touches cost no memory.
/// @return null if handle or block are not to be had, and for 0 bytes; goes to FreeImageHandle
ImageHandle* AllocImageHandle(std::size_t nBytes);

/// Gives block and handle back; null is allowed.
void FreeImageHandle(ImageHandle* pHandle);

/// Sets every field to zero. Pixels that the record had are not freed.
void SetImageDefaults(RawImage& raw);

struct ImageHandleDeleter {
    void operator()(ImageHandle* pHandle) const noexcept { FreeImageHandle(pHandle); }
};
/// Owns the handle of a record for the length of a scope.
using ImageHandlePtr = std::unique_ptr<ImageHandle, ImageHandleDeleter>;

/// The start of row y of a record that has pixels.
inline unsigned char* RawRow(const RawImage& raw, std::int32_t y)
{
    return raw.data->pPixels + static_cast<std::ptrdiff_t>(y) * raw.bytesPerLine;
}
