// Memory in huge pages.
#include "Util/LargeBuffer.h"

#include <new>

#include <sys/mman.h>

namespace LS::Util {

namespace {

constexpr std::size_t HUGE_PAGE = std::size_t{2} << 20;

} // namespace

void PreferHugePages([[maybe_unused]] void* pBlock, [[maybe_unused]] std::size_t nBytes)
{
#ifdef MADV_HUGEPAGE
    if (pBlock && std::align(HUGE_PAGE, HUGE_PAGE, pBlock, nBytes))
        madvise(pBlock, nBytes / HUGE_PAGE * HUGE_PAGE, MADV_HUGEPAGE);
#endif
}

void* AllocateLarge(std::size_t nBytes)
{
    if (nBytes < HUGE_PAGE || nBytes > SIZE_MAX - HUGE_PAGE) {
        if (void* p = std::malloc(nBytes > 0 ? nBytes : 1))
            return p;
        throw std::bad_alloc();
    }
    const std::size_t nWhole = (nBytes + HUGE_PAGE - 1) / HUGE_PAGE * HUGE_PAGE;
    void* p = std::aligned_alloc(HUGE_PAGE, nWhole);
    if (!p)
        throw std::bad_alloc();
    PreferHugePages(p, nWhole);
    return p;
}

} // namespace LS::Util
