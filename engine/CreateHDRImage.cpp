// From a series to its first preview.
#include "engine/HDRRoutine.h"

#include "Util/FailureLog.h"
#include "engine/HDRWorkspace.h"
#include "engine/TMORoutine.h"

#include <exception>

using LS::Util::PixelBuffer;

namespace {

constexpr float PREVIEW_EXPOSURE = 0.0F;
constexpr float PREVIEW_GAMMA = 2.2F;

PixelBuffer FirstPreview(ProgbarSetter* pProgress)
{
    const HDRWorkspace& workspace = Workspace();
    return ToneMapScaledImage(workspace.pfScaled.get(), workspace.nScaledWidth, workspace.nScaledHeight,
                              PREVIEW_EXPOSURE, PREVIEW_GAMMA, pProgress);
}

/// Empties the workspace. Curves that it has taken over are deleted with it, so they leave the caller's list.
void Abandon(std::vector<float*>& vafCurves)
{
    if (!Workspace().vafCurves.empty())
        vafCurves.clear();
    ResetWorkspace();
}

} // namespace

unsigned char* CreateHDRImage(const std::vector<std::wstring>& vsLDRFiles, std::int32_t nWidth,
                              std::int32_t nHeight, const std::vector<float>& vfShutters,
                              const std::vector<float>& vfStops, const std::vector<float>& vfGains,
                              const std::vector<float>& vfNDs, std::vector<float*>& vafCurves,
                              std::int32_t* pnOutWidth, std::int32_t* pnOutHeight, ProgbarSetter* pProgress)
{
    ResetWorkspace();
    PixelBuffer pPixels;
    try {
        const bool bRecover = vafCurves.empty();
        SubProgress recovery(pProgress, 1, 80);
        SubProgress merge = bRecover ? SubProgress(pProgress, 81, 96) : SubProgress(pProgress, 1, 80);
        SubProgress preview = bRecover ? SubProgress(pProgress, 97, 99) : SubProgress(pProgress, 81, 96);
        if ((!bRecover || CalculateCurves(vsLDRFiles, nWidth, nHeight, vfShutters, vfStops, vfGains, vfNDs,
                                          vafCurves, recovery.Get())) &&
            MergeExposures(vsLDRFiles, nWidth, nHeight, vfShutters, vfStops, vfGains, vfNDs, vafCurves,
                           merge.Get(), &Workspace()))
            pPixels = FirstPreview(preview.Get());
    } catch (const std::exception& e) {
        LS::Util::LogFailure("create HDR image", "", e.what());
    }
    if (!pPixels) {
        Abandon(vafCurves);
        return nullptr;
    }
    *pnOutWidth = Workspace().nScaledWidth;
    *pnOutHeight = Workspace().nScaledHeight;
    return pPixels.release();
}
