// Source cache files: decoded photographs in the form in which the engine streams them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

class wxImage;

/// Writes a decoded photograph as a source cache file: for each pixel, row by row from the top, four bytes:
/// the alpha value, or 0 without an alpha channel, then red, green, blue.
///
/// A file whose size is wrong after its close is deleted, so that a later attempt converts again; that is
/// logged.
/// @param sPath    in the file system's bytes; replaced if it exists
/// @param rowDone  called after each row with its index; may be empty. When it gives false the file is
///                 deleted and the result is false
/// @return true if the whole file is on disk
bool WriteSourceCacheFile(const wxImage& image, const std::string& sPath,
                          const std::function<bool(std::int32_t y)>& rowDone);

/// Progress of converting a series, in percent, of which each of nCount images has an equal share.
namespace ConversionPercent {
/// Image i was converted before.
std::int32_t Skipped(std::int32_t i, std::int32_t nCount);
/// Image i is decoded.
std::int32_t Decoded(std::int32_t i, std::int32_t nCount);
/// Row y of the nHeight rows of image i is written.
std::int32_t Row(std::int32_t i, std::int32_t nCount, std::int32_t y, std::int32_t nHeight);
} // namespace ConversionPercent
