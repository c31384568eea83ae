// Where the interface of Exiv2 0.28 differs from that of 0.27: the rest of the code knows only these.
#pragma once

#include <cstdint>
#include <vector>

namespace Exiv2 {
class Exifdatum;
class ExifThumbC;
class Image;
} // namespace Exiv2

/// The first value of a tag.
std::int64_t IntegerOf(const Exiv2::Exifdatum& tag);

/// The bytes of the small picture in the Exif data; empty if there is none.
std::vector<unsigned char> BytesOf(const Exiv2::ExifThumbC& thumbnail);

/// Whether a file is a video of the kind ASF.
bool IsAsf(const Exiv2::Image& image);
