// Memory in huge pages.
#include "Util/LargeBuffer.h"

#include <new>

#include <sys/mman.h>

namespace LS::Util {

void* AllocateLarge(std::size_t nBytes)
{
    constexpr std::size_t HUGE_PAGE = std::size_t{2} << 20;
    if (nBytes < HUGE_PAGE || nBytes > SIZE_MAX - HUGE_PAGE) {
        if (void* p = std::malloc(nBytes > 0 ? nBytes : 1))
            return p;
        throw std::bad_alloc();
    }
    const std::size_t nWhole = (nBytes + HUGE_PAGE - 1) / HUGE_PAGE * HUGE_PAGE;
    void* p = std::aligned_alloc(HUGE_PAGE, nWhole);
    if (!p)
        throw std::bad_alloc();
#ifdef MADV_HUGEPAGE
    madvise(p, nWhole, MADV_HUGEPAGE); // advice: a system without them refuses, and nothing else changes
#endif
    return p;
}

} // namespace LS::Util
