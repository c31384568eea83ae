// Opens a photograph's metadata, and nothing but a photograph's.
#include "image/MetadataFile.h"

#include "Util/RegularFile.h"

#include <exiv2/image.hpp>
#include <exiv2/matroskavideo.hpp>
#include <exiv2/quicktimevideo.hpp>
#include <exiv2/riffvideo.hpp>

namespace {

/// The path in a form that the library takes for nothing but a file: it knows the standard input as "-" and
/// addresses by how they begin.
std::string PlainFilePath(const std::string& sPath)
{
    return sPath.starts_with('/') ? sPath : "./" + sPath;
}

/// Videos are no photographs, and on damaged ones the library's readers may never end.
bool IsVideo(const Exiv2::Image& image)
{
    constexpr int ASF = 24; // its header doesn't stand alone
    switch (image.imageType()) {
    case Exiv2::ImageType::riff:
    case Exiv2::ImageType::mkv:
    case Exiv2::ImageType::qtime:
    case ASF:
        return true;
    default:
        return false;
    }
}

} // namespace

std::unique_ptr<Exiv2::Image> OpenMetadata(const std::string& sPath, std::string& sReason)
{
    if (!LS::Util::IsRegularFile(sPath, sReason))
        return nullptr;
    std::unique_ptr<Exiv2::Image> pImage(Exiv2::ImageFactory::open(PlainFilePath(sPath)).release());
    if (!IsVideo(*pImage))
        pImage->readMetadata();
    return pImage;
}
