// Opens a photograph's metadata, and nothing but a photograph's.
#pragma once

#include "image/Orientation.h"

#include <memory>
#include <string>

namespace Exiv2 {
class ExifData;
class Image;
} // namespace Exiv2

/// Opens a file and reads its metadata.
///
/// Only a regular file reaches the library, which would follow addresses and wait for pipes; no name is
/// taken for anything but a file's. Nor do oversized files, and PNG files that don't hold what they announce.
/// The library's messages go where Exiv2Messages says.
/// @param sPath    in the file system's bytes
/// @param sReason  receives why there is none, in words for a log
/// @return null if the path leads to no such file; without metadata if it leads to a video or a sidecar
/// @throws Exiv2::Error for a file that the library can't open or read
std::unique_ptr<Exiv2::Image> OpenMetadata(const std::string& sPath, std::string& sReason);

/// How a picture lies; upright where its Exif data doesn't say.
Orientation OrientationOf(const Exiv2::ExifData& exif);

/// The same for a JPEG, PNG or TIFF file; upright for others, and where its metadata can't be read. Nothing
/// is printed.
/// @param sPath  in the file system's bytes
Orientation OrientationOfFile(const std::string& sPath);
