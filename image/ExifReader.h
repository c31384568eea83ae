// Exposure values of a photograph, and when and with what it was taken, from its Exif data.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

/// What the Exif data of a photograph tells about its exposure. Starts with the values that stand where a
/// file tells nothing.
struct ExposureValues {
    std::int32_t width = 0; ///< pixels, of the upright picture; provisional until the photograph is decoded
    std::int32_t height = 0;
    float exposureTime = 0.016666668F; ///< seconds
    float fNumber = 14.0F;
    float exposureBias = 0.0F; ///< EV
};

enum class ExifOutcome {
    Read,   ///< every value is taken from the file; a tag that it lacks reads as -1
    NoExif, ///< a picture without Exif data, or none that could be understood: nothing is changed
    Failed  ///< not a regular file, or unreadable; what was read before the fault stays
};

/// Reads the exposure values of a photograph. Nothing is printed.
///
/// A tag without any value in it is a fault; a fraction with the denominator 0 reads as 0.
/// @param sPath   in the file system's bytes. Only an existing regular file is opened: the library would
///                follow addresses and wait for pipes
/// @param values  receives the values in the order of its members; starts as the caller left it
/// @param psReason  if not null, receives why it failed, or which errors the library met before it found
///                  no Exif data; else it becomes empty
ExifOutcome ReadExif(const std::string& sPath, ExposureValues& values, std::string* psReason = nullptr);

/// What tells which photographs were taken in one go.
struct ShotValues {
    ExposureValues exposure;
    std::string sCamera; ///< maker, model and serial number, as far as the file tells them
    std::int32_t width =
        0; ///< pixels, of the upright picture itself and not of a tag; 0 if the file doesn't tell
    std::int32_t height = 0;
    std::optional<std::chrono::microseconds> taken; ///< since 1970 on the camera's clock
};

/// Reads the values of a shot. Nothing is printed. The moment is that of the original; where the file tells
/// none, that of digitizing or of the last change.
/// @param sPath, psReason  as for ReadExif
/// @param shot  receives the values, which are only those of the start of a ShotValues unless it was read
ExifOutcome ReadShot(const std::string& sPath, ShotValues& shot, std::string* psReason = nullptr);
