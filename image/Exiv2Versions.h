// Where the interface of Exiv2 0.28 differs from that of 0.27: the rest of the code knows only these.
#pragma once

#include <cstdint>
#include <span>

#include <exiv2/exif.hpp>
#include <exiv2/image.hpp>
#include <exiv2/version.hpp>

#if EXIV2_TEST_VERSION(0, 28, 0)

/// The first value of a tag.
inline std::int64_t IntegerOf(const Exiv2::Exifdatum& tag)
{
    return tag.toInt64(0);
}

/// Valid as long as the buffer.
inline std::span<const unsigned char> BytesOf(const Exiv2::DataBuf& buffer)
{
    return {buffer.c_data(), buffer.size()};
}

/// What isn't to be read is known by the library's name for it.
constexpr Exiv2::ImageType IMAGE_TYPE_ASF = Exiv2::ImageType::asf;

#else

inline std::int64_t IntegerOf(const Exiv2::Exifdatum& tag)
{
    return tag.toLong(0);
}

inline std::span<const unsigned char> BytesOf(const Exiv2::DataBuf& buffer)
{
    return {buffer.pData_, buffer.pData_ ? static_cast<std::size_t>(buffer.size_) : 0};
}

constexpr int IMAGE_TYPE_ASF = 24; // the header with its name doesn't stand alone

#endif
