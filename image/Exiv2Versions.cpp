// Both interfaces of Exiv2.
#include "image/Exiv2Versions.h"

#include <exiv2/exif.hpp>
#include <exiv2/image.hpp>
#include <exiv2/version.hpp>

#if EXIV2_TEST_VERSION(0, 28, 0)

std::int64_t IntegerOf(const Exiv2::Exifdatum& tag)
{
    return tag.toInt64(0);
}

std::vector<unsigned char> BytesOf(const Exiv2::ExifThumbC& thumbnail)
{
    const Exiv2::DataBuf buffer = thumbnail.copy();
    return {buffer.c_data(), buffer.c_data() + buffer.size()};
}

bool IsAsf(const Exiv2::Image& image)
{
    return image.imageType() == Exiv2::ImageType::asf;
}

#else

std::int64_t IntegerOf(const Exiv2::Exifdatum& tag)
{
    return tag.toLong(0);
}

std::vector<unsigned char> BytesOf(const Exiv2::ExifThumbC& thumbnail)
{
    const Exiv2::DataBuf buffer = thumbnail.copy();
    if (!buffer.pData_)
        return {};
    return {buffer.pData_, buffer.pData_ + buffer.size_};
}

bool IsAsf(const Exiv2::Image& image)
{
    constexpr int ASF = 24; // the header with its name doesn't stand alone
    return image.imageType() == ASF;
}

#endif
