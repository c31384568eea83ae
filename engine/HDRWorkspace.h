// What the engine remembers of the latest merge.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// The one workspace of the engine: empty, or filled by the end of a successful merge.
///
/// It is a static object: it exists before any window and, when it goes, deletes its file, its curves and,
/// where the process owns the cache folder, what is left in that.
struct HDRWorkspace {
    HDRWorkspace() = default;
    HDRWorkspace(const HDRWorkspace&) = delete;
    HDRWorkspace& operator=(const HDRWorkspace&) = delete;
    ~HDRWorkspace();

    bool bCancel = false;    ///< set when the user cancels; every long loop of the engine polls it
    std::int32_t nWidth = 0; ///< pixels of the merged image; 0 while there is none
    std::int32_t nHeight = 0;
    std::int32_t nScaledWidth = 0;
    std::int32_t nScaledHeight = 0;
    std::wstring sHDRFile;             ///< path of the float cache file; empty while there is none
    std::unique_ptr<float[]> pfScaled; ///< the scaled-down image, interleaved R, G, B
    std::vector<float*> vafCurves;     ///< owned: the merge's curves of 256 floats, red, green, blue; or none
};

/// The one workspace.
HDRWorkspace& Workspace();

/// Back to the empty state: deletes the float cache file, the scaled-down image and the curves, and clears
/// the cancel flag. Source cache files stay, for the next merge of the same photographs.
void ResetWorkspace();

/// Asks the running operation to stop at its next poll. @return true
bool RequestCancel();
