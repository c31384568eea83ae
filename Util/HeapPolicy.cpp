// How the C library hands large blocks out and takes them back.
#include "Util/HeapPolicy.h"

#include "Util/LargeBuffer.h"

#include <climits>
#include <cstdlib>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace LS::Util {

void KeepFreedImages()
{
#if defined(__GLIBC__)
    // By default a block from 32 MB on is mapped by itself and unmapped when it is freed.
    // 5 images of 24 MP: the system's share of a run 1230 ms -> 880 ms.
    ::mallopt(M_MMAP_THRESHOLD, 1 << 30);
    ::mallopt(M_TRIM_THRESHOLD, INT_MAX);
#endif
}

void ExpectLargeBlock(std::size_t nBytes)
{
    // The heap hands out the same place again, as untouched as this block leaves it.
    void* const pBlock = std::malloc(nBytes);
    PreferHugePages(pBlock, nBytes);
    std::free(pBlock);
}

} // namespace LS::Util
