// The operations of the engine: merge a series, map it to the screen, save it.
//
// Free functions around the one workspace (engine/HDRWorkspace.h), for one caller at a time. They show
// nothing: null or false means that it did not happen, and the reason is in the log. pProgress is null or
// receives 0 to 100; a cancel that comes back through it ends the operation at its next poll.
#pragma once

#include "engine/ProgbarSetter.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

struct HDRWorkspace;
struct RecoveryReport;

/// Makes the HDR image of a series: empties the workspace, recovers the response curves if none are given,
/// merges, and maps the first preview at exposure 0.0 and gamma 2.2.
///
/// @param vsLDRFiles  source cache files of 4 bytes a pixel, one per image, nWidth x nHeight pixels each
/// @param vfShutters,vfStops,vfGains,vfNDs  seconds, f-numbers, gains and neutral densities, one per image
/// @param vafCurves   three curves of 256 floats: red, green, blue; or none, and then the recovered ones are
///                    appended. From a success on the workspace owns the same arrays and the caller must not
///                    delete them. After a failure the caller owns what
///                    the vector holds: all of it if the merge failed; nothing if the merge had taken the
///                    curves and a later step failed, for then they are deleted and the vector is emptied
/// @param pnOutWidth,pnOutHeight  receive the size of the preview on success
/// @return 8-bit R, G, B of the preview, interleaved, from malloc, the caller's; or null after a failure or
///         a cancel, and then the workspace is empty
unsigned char* CreateHDRImage(const std::vector<std::wstring>& vsLDRFiles, std::int32_t nWidth,
                              std::int32_t nHeight, const std::vector<float>& vfShutters,
                              const std::vector<float>& vfStops, const std::vector<float>& vfGains,
                              const std::vector<float>& vfNDs, std::vector<float*>& vafCurves,
                              std::int32_t* pnOutWidth, std::int32_t* pnOutHeight, ProgbarSetter* pProgress);

/// Maps the scaled-down image to the screen, for a slider move. Touches no file; nothing can cancel it.
///
/// @param fExposure  in stops   @param fGamma  of the display, above 0.2
/// @param pnOutWidth,pnOutHeight  receive the size on success
/// @return 8-bit R, G, B, interleaved, from malloc, the caller's; null without a merged image
unsigned char* ToneMapScaled(float fExposure, float fGamma, std::int32_t* pnOutWidth,
                             std::int32_t* pnOutHeight);

/// Maps the full-size image for an 8-bit file. Needs three float planes of it in memory up to 1500 pixels in
/// each direction, above that one plane and space for "xydata.tmp" in the cache folder. Without a progress it
/// always works in memory.
///
/// The cancel flag is cleared at the start and at the end; the merged image stays, whatever happens.
/// @return as ToneMapScaled, nWidth x nHeight x 3 bytes; null also after a cancel or a failed read or write
unsigned char* ToneMapFull(float fExposure, float fGamma, std::int32_t* pnOutWidth, std::int32_t* pnOutHeight,
                           ProgbarSetter* pProgress);

/// Formats of SaveHDRFile, by number.
enum HDRFileFormat : std::int32_t { HDR_OPENEXR = 0, HDR_RADIANCE = 1, HDR_FLOAT_TIFF = 2 };

/// Writes the merged image to a file.
///
/// @param szPath  in the file system's bytes; an existing file is replaced
/// @return true when the whole file is written and closed. After a failure a partial file may stay
bool SaveHDRFile(const char* szPath, std::int32_t nFormat, ProgbarSetter* pProgress);

/// Writes a float cache file in one of the formats.
/// @param szSource        nWidth x nHeight x 3 floats without header
/// @param szSource,szPath in the file system's bytes
/// @return false for a null path, a size that is not positive, an unknown format, or any failure
bool WriteHDRData(const char* szSource, const char* szPath, std::int32_t nWidth, std::int32_t nHeight,
                  std::int32_t nFormat, ProgbarSetter* pProgress);

/// Writes the curves of the latest merge: 256 floats each of red, green, blue, without header.
/// @return false for a null path, an empty workspace or a file that can't be made
bool SaveCurves(const char* szPath);

/// Appends three new curves: of a file, or three copies of the Standard curve if szPath is null. They are the
/// caller's until a merge with them succeeds.
/// @return false if the file can't be opened. What a short file lacks reads as 0
bool LoadCurves(const char* szPath, std::vector<float*>& vafCurves);

/// Merges source cache files into a new float cache file and fills the workspace, which is empty before.
///
/// Holds one row per source and one row of result. Only its very last step changes the workspace.
/// @param vsLDRFiles  source cache files of 4 bytes a pixel, one per image
/// @param vfShutters,vfStops  seconds and f-numbers. vfGains and vfNDs play no part but for their length
/// @param vafCurves   three curves; on success the workspace owns the same arrays
/// @return false if the size isn't positive, if a file can't be opened, read or written, or after a cancel
bool MergeExposures(const std::vector<std::wstring>& vsLDRFiles, std::int32_t nWidth, std::int32_t nHeight,
                    const std::vector<float>& vfShutters, const std::vector<float>& vfStops,
                    const std::vector<float>& vfGains, const std::vector<float>& vfNDs,
                    const std::vector<float*>& vafCurves, ProgbarSetter* pProgress, HDRWorkspace* pHDRInfo);

/// A recovery takes at most this many images: with more there is no sample for each.
constexpr std::size_t MOST_RECOVERED_IMAGES = 256;

/// Recovers the camera's response curves from a series, on copies decimated to 300 rows or up to twice that.
///
/// @param vsLDRFiles  source cache files of 4 bytes a pixel, one per image, in any order
/// @param vfShutters,vfStops,vfGains,vfNDs  of each image: seconds, f-number, gain in thirds of a natural
///                    logarithm, neutral density in natural logarithms
/// @param vafCurves   receives three new curves, the caller's; nothing after a failure
/// @param pReport     null, or receives what was found on the way, also after a failure of the solving
/// @return false for fewer than two images or too many, for images smaller than 10 pixels, a file that can't
///         be read, an exposure that is not finite, a series whose values span too little or are too few, or
///         after a cancel
bool CalculateCurves(const std::vector<std::wstring>& vsLDRFiles, std::int32_t nWidth, std::int32_t nHeight,
                     const std::vector<float>& vfShutters, const std::vector<float>& vfStops,
                     const std::vector<float>& vfGains, const std::vector<float>& vfNDs,
                     std::vector<float*>& vafCurves, ProgbarSetter* pProgress,
                     RecoveryReport* pReport = nullptr);
