// A pixel record for tests whose block ends where its bytes end, so that the sanitizer sees the next one.
#pragma once

#include "image/RawImage.h"
#include "tests/support/TempFolder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace LS::Tests {

class RawPicture {
public:
    /// A record of the given bytes, in a block of at least nBlock bytes. The block starts at an odd address.
    RawPicture(std::int32_t nWidth, std::int32_t nHeight, std::int32_t nBitsPerPixel, const Bytes& pixels,
               std::size_t nBlock = 0)
        : m_block(1 + std::max(pixels.size(), nBlock)), m_handle{m_block.data() + 1, m_block.size() - 1}
    {
        std::copy(pixels.begin(), pixels.end(), m_handle.pPixels);
        const std::int32_t nRow = nHeight > 0 ? static_cast<std::int32_t>(pixels.size()) / nHeight : 0;
        raw = {nWidth, nHeight, nRow, nBitsPerPixel, static_cast<std::uint32_t>(pixels.size()), &m_handle};
    }
    RawPicture(const RawPicture&) = delete;
    RawPicture& operator=(const RawPicture&) = delete;
    ~RawPicture() = default;

    /// The bytes in use.
    Bytes Pixels() const { return {m_handle.pPixels, m_handle.pPixels + raw.dataSize}; }

    RawImage raw{};

private:
    Bytes m_block;
    ImageHandle m_handle;
};

/// Samples as they lie in memory.
template <typename Sample> Bytes AsBytes(const std::vector<Sample>& vSamples)
{
    Bytes bytes(vSamples.size() * sizeof(Sample));
    std::memcpy(bytes.data(), vSamples.data(), bytes.size());
    return bytes;
}

} // namespace LS::Tests
