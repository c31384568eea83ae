// Opens a photograph's metadata, and nothing but a photograph's.
#include "image/MetadataFile.h"

#include "Util/FileDescriptor.h"
#include "Util/RegularFile.h"
#include "image/Exiv2Messages.h"
#include "image/Exiv2Versions.h"
#include "image/ImageHeader.h"

#include <exiv2/exif.hpp>
#include <exiv2/image.hpp>
#include <exiv2/matroskavideo.hpp>
#include <exiv2/quicktimevideo.hpp>
#include <exiv2/riffvideo.hpp>
#include <exiv2/xmpsidecar.hpp>

#include <exception>

#include <fcntl.h>

namespace {

/// The path in a form that the library takes for nothing but a file: it knows the standard input as "-" and
/// addresses by how they begin.
std::string PlainFilePath(const std::string& sPath)
{
    return sPath.starts_with('/') ? sPath : "./" + sPath;
}

/// Videos are no photographs, and on damaged ones the library's readers may never end. Nor are the texts that
/// lie beside photographs, which are read as a whole, however long.
bool IsNoPhotograph(const Exiv2::Image& image)
{
    switch (image.imageType()) {
    case Exiv2::ImageType::riff:
    case Exiv2::ImageType::mkv:
    case Exiv2::ImageType::qtime:
    case Exiv2::ImageType::xmp:
        return true;
    default:
        return IsAsf(image);
    }
}

LS::Util::FileDescriptor OpenToLook(const std::string& sPath)
{
    return LS::Util::FileDescriptor(::open(sPath.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
}

/// Whether the library's reader could go on for minutes, from piece to piece of no content.
bool MayTakeLong(const std::string& sPath)
{
    const LS::Util::FileDescriptor file = OpenToLook(sPath);
    if (!file.IsOpen())
        return false; // the library says why
    const PictureFormat format = FormatOf(file.Get());
    return IsOversized(FileBytes(file.Get()), format) || !HoldsItsChunks(file.Get(), format);
}

} // namespace

std::unique_ptr<Exiv2::Image> OpenMetadata(const std::string& sPath, std::string& sReason)
{
    if (!LS::Util::IsRegularFile(sPath, sReason))
        return nullptr;
    if (MayTakeLong(sPath)) {
        sReason = "no photograph is so large, or it is cut";
        return nullptr;
    }
    std::unique_ptr<Exiv2::Image> pImage(Exiv2::ImageFactory::open(PlainFilePath(sPath)).release());
    if (!IsNoPhotograph(*pImage))
        pImage->readMetadata();
    return pImage;
}

Orientation OrientationOf(const Exiv2::ExifData& exif)
{
    const auto tag = exif.findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
    return tag != exif.end() && tag->count() == 1 ? OrientationOfTag(static_cast<int>(IntegerOf(*tag)))
                                                  : Orientation::Upright;
}

Orientation OrientationOfFile(const std::string& sPath)
{
    if (const LS::Util::FileDescriptor file = OpenToLook(sPath);
        !file.IsOpen() || FormatOf(file.Get()) == PictureFormat::Other)
        return Orientation::Upright;
    const Exiv2Messages messages;
    std::string sReason;
    try {
        const auto pImage = OpenMetadata(sPath, sReason);
        return pImage ? OrientationOf(pImage->exifData()) : Orientation::Upright;
    } catch (const std::exception&) {
        return Orientation::Upright; // whether it is a picture is the decoder's business
    }
}
