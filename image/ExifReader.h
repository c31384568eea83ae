// Exposure values of a photograph, from its Exif data.
#pragma once

#include <cstdint>
#include <string>

/// What the Exif data of a photograph tells about its exposure. Starts with the values that stand where a
/// file tells nothing.
struct ExposureValues {
    std::int32_t width = 0; ///< pixels; provisional until the photograph is decoded
    std::int32_t height = 0;
    float exposureTime = 0.016666668F; ///< seconds
    float fNumber = 14.0F;
    float exposureBias = 0.0F; ///< EV
};

enum class ExifOutcome {
    Read,   ///< every value is taken from the file; a tag that it lacks reads as -1
    NoExif, ///< a picture without Exif data: nothing is changed
    Failed  ///< not a regular file, or unreadable; what was read before the fault stays
};

/// Reads the exposure values of a photograph.
///
/// @param sPath   in the file system's bytes. Only an existing regular file is opened: the library would
///                follow addresses and wait for pipes
/// @param values  receives the values in the order of its members; starts as the caller left it
/// @param psReason  if not null, receives why it failed
ExifOutcome ReadExif(const std::string& sPath, ExposureValues& values, std::string* psReason = nullptr);
