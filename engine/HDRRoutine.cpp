// The operations that the window and the command line call.
#include "engine/HDRRoutine.h"

#include "HDRFile/FloatTiff.h"
#include "HDRFile/OpenExr.h"
#include "HDRFile/Radiance.h"
#include "Util/FailureLog.h"
#include "Util/Paths.h"
#include "engine/HDRWorkspace.h"

#include <exception>

bool WriteHDRData(const char* szSource, const char* szPath, std::int32_t nWidth, std::int32_t nHeight,
                  std::int32_t nFormat, ProgbarSetter* pProgress)
{
    if (!szSource || !szPath || nWidth <= 0 || nHeight <= 0)
        return false;
    try {
        switch (nFormat) {
        case HDR_OPENEXR:
            return WriteOpenExrFile(szSource, szPath, nWidth, nHeight, pProgress);
        case HDR_RADIANCE:
            return WriteRadianceFile(szSource, szPath, nWidth, nHeight, pProgress);
        case HDR_FLOAT_TIFF:
            return WriteFloatTiffFile(szSource, szPath, nWidth, nHeight, pProgress);
        default:
            return false;
        }
    } catch (const std::exception& e) {
        LS::Util::LogFailure("save", szPath, e.what());
        return false;
    }
}

bool SaveHDRFile(const char* szPath, std::int32_t nFormat, ProgbarSetter* pProgress)
{
    const HDRWorkspace& workspace = Workspace();
    const std::string sSource = LS::Util::NarrowPath(workspace.sHDRFile);
    const bool bSaved =
        WriteHDRData(sSource.c_str(), szPath, workspace.nWidth, workspace.nHeight, nFormat, pProgress);
    // The writers don't stop for a cancel; left set, it would stop the next preview.
    Workspace().bCancel = false;
    return bSaved;
}
