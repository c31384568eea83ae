// Pixel blocks from the system's page allocator.
#include "image/RawImage.h"

#include "image/tiff.h"

#include <new>

#include <sys/mman.h>

ImageHandle* AllocImageHandle(std::size_t nBytes)
{
    // Not from the heap: there a block may be cleared by hand, and stay with the process after it was freed.
    void* const pBlock =
        mmap(nullptr, nBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0); // 0 bytes fail
    ImageHandle* pHandle = nullptr;
    if (pBlock != MAP_FAILED) {
        pHandle = new (std::nothrow) ImageHandle{static_cast<unsigned char*>(pBlock), nBytes};
        if (!pHandle)
            munmap(pBlock, nBytes);
    }
    if (!pHandle)
        ReportError("Error allocating %ld KB of memory", static_cast<long>(nBytes >> 10));
    return pHandle;
}

void FreeImageHandle(ImageHandle* pHandle)
{
    if (pHandle)
        munmap(pHandle->pPixels, pHandle->nBytes);
    delete pHandle;
}

void SetImageDefaults(RawImage& raw)
{
    raw = RawImage{};
}
