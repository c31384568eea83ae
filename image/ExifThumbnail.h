// The small picture that a photograph carries in its Exif data.
#pragma once

#include <string>

#include <wx/image.h>

namespace Exiv2 {
class ExifData;
}

/// Reads the Exif data of a photograph and decodes the thumbnail in it, at the thumbnail's own size and
/// upright: without an orientation of its own it lies as the photograph does. The photograph itself isn't
/// decoded.
/// @param path     a name that code page 936 can't express counts as having no thumbnail
/// @param exif     receives the whole Exif data
/// @param sReason  receives the reason, in words for a log, if there is Exif data but no usable thumbnail
/// @return an invalid image if there is no thumbnail, or a broken one
/// @throws std::exception  if the path leads to no regular file, or to none that the Exif library can read
wxImage ReadExifThumbnail(const wxString& path, Exiv2::ExifData& exif, std::string& sReason);

/// The longest side of a thumbnail, in pixels.
constexpr int THUMBNAIL_SIDE = 160;

/// The size at which a picture fits into the square of that side: never enlarged, truncated, at least 1.
wxSize ReducedSize(const wxSize& size);
