// The merged image at any exposure and gamma: as a preview and in full size.
#include "engine/HDRRoutine.h"

#include "Util/FailureLog.h"
#include "engine/HDRWorkspace.h"
#include "engine/TMORoutine.h"

#include <exception>

using LS::Util::PixelBuffer;

namespace {

/// Pixels in each direction. Above it, three float planes of the image would cost too much memory.
constexpr std::int32_t IN_MEMORY_LIMIT = 1500;

/// Takes one of the roads, with what it throws turned into null and a line in the log.
template <typename Road> PixelBuffer ToneMapped(Road road)
{
    try {
        if (Workspace().pfScaled)
            return road(Workspace());
        LS::Util::LogFailure("tone map", "", "there is no merged image");
    } catch (const std::exception& e) {
        LS::Util::LogFailure("tone map", "", e.what());
    }
    return nullptr;
}

PixelBuffer MappedCache(const HDRWorkspace& workspace, float fExposure, float fGamma,
                        ProgbarSetter* pProgress)
{
    const bool bLarge = workspace.nWidth > IN_MEMORY_LIMIT || workspace.nHeight > IN_MEMORY_LIMIT;
    const auto road = pProgress && bLarge ? ToneMapCacheByRows : ToneMapCacheInMemory;
    SubProgress progress(pProgress, 1, 100);
    return road(workspace.sHDRFile, workspace.nWidth, workspace.nHeight, fExposure, fGamma, progress.Get());
}

} // namespace

unsigned char* ToneMapScaled(float fExposure, float fGamma, std::int32_t* pnOutWidth,
                             std::int32_t* pnOutHeight)
{
    Workspace().bCancel = false; // a cancel of an earlier operation that came too late
    PixelBuffer pPixels = ToneMapped([&](const HDRWorkspace& workspace) {
        return ToneMapScaledImage(workspace.pfScaled.get(), workspace.nScaledWidth, workspace.nScaledHeight,
                                  fExposure, fGamma, nullptr);
    });
    if (!pPixels)
        return nullptr;
    *pnOutWidth = Workspace().nScaledWidth;
    *pnOutHeight = Workspace().nScaledHeight;
    return pPixels.release();
}

unsigned char* ToneMapFull(float fExposure, float fGamma, std::int32_t* pnOutWidth, std::int32_t* pnOutHeight,
                           ProgbarSetter* pProgress)
{
    Workspace().bCancel = false;
    PixelBuffer pPixels = ToneMapped(
        [&](const HDRWorkspace& workspace) { return MappedCache(workspace, fExposure, fGamma, pProgress); });
    Workspace().bCancel = false; // also after a success: a cancel behind the last poll came too late
    if (!pPixels)
        return nullptr;
    *pnOutWidth = Workspace().nWidth;
    *pnOutHeight = Workspace().nHeight;
    return pPixels.release();
}
