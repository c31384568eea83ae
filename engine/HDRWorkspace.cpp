// The workspace's life: filled by the merge, emptied here.
#include "engine/HDRWorkspace.h"

#include "Util/Paths.h"
#include "engine/CacheFolder.h"

#include <unistd.h>

namespace {

HDRWorkspace g_workspace;

void DropResult(HDRWorkspace& workspace)
{
    workspace.pfScaled.reset();
    if (!workspace.sHDRFile.empty())
        unlink(LS::Util::NarrowPath(workspace.sHDRFile).c_str());
    workspace.sHDRFile.clear();
    for (const float* pCurve : workspace.vafCurves)
        delete[] pCurve;
    workspace.vafCurves.clear();
}

} // namespace

HDRWorkspace::~HDRWorkspace()
{
    DropResult(*this);
    if (OwnsCacheFolder())
        DeleteCacheFiles(CacheFolder());
}

HDRWorkspace& Workspace()
{
    return g_workspace;
}

void ResetWorkspace()
{
    g_workspace.bCancel = false;
    g_workspace.nWidth = g_workspace.nHeight = 0;
    g_workspace.nScaledWidth = g_workspace.nScaledHeight = 0;
    DropResult(g_workspace);
}

bool RequestCancel()
{
    g_workspace.bCancel = true;
    return true;
}
