// Uninitialised arrays for whole images.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <type_traits>

namespace LS::Util {

struct FreeDeleter {
    void operator()(void* p) const noexcept { std::free(p); }
};

/// An array from malloc.
template <typename T> using LargeBuffer = std::unique_ptr<T[], FreeDeleter>;

/// Asks the system to give huge pages to all of a block that fills such pages: its first use then costs one
/// fault for 2 MB in place of 512. An advice only, which a system without them refuses. Null is ignored.
void PreferHugePages(void* pBlock, std::size_t nBytes);

/// Memory that free() takes back. From a few megabytes on it asks the system for huge pages: the first touch
/// of each ordinary page costs as much as some thousand instructions, which adds up to more than the tone
/// mapping of a preview.
/// @throws std::bad_alloc
void* AllocateLarge(std::size_t nBytes);

/// @throws std::bad_alloc
template <typename T> LargeBuffer<T> MakeLargeBuffer(std::size_t nCount)
{
    static_assert(std::is_trivial_v<T>);
    return LargeBuffer<T>(static_cast<T*>(AllocateLarge(nCount * sizeof(T))));
}

} // namespace LS::Util
