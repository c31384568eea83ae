// Opens a photograph's metadata, and nothing but a photograph's.
#include "image/MetadataFile.h"

#include "Util/RegularFile.h"

#include <exiv2/image.hpp>

namespace {

/// The path in a form that the library takes for nothing but a file: it knows the standard input as "-" and
/// addresses by how they begin.
std::string PlainFilePath(const std::string& sPath)
{
    return sPath.starts_with('/') ? sPath : "./" + sPath;
}

} // namespace

std::unique_ptr<Exiv2::Image> OpenMetadata(const std::string& sPath, std::string& sReason)
{
    if (!LS::Util::IsRegularFile(sPath, sReason))
        return nullptr;
    std::unique_ptr<Exiv2::Image> pImage(Exiv2::ImageFactory::open(PlainFilePath(sPath)).release());
    pImage->readMetadata();
    return pImage;
}
