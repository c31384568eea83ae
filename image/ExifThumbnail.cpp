// The small picture that a photograph carries in its Exif data.
#include "image/ExifThumbnail.h"

#include "Util/Paths.h"
#include "image/Exiv2Messages.h"
#include "image/Exiv2Versions.h"
#include "image/ImageDecoder.h"
#include "image/MetadataFile.h"

#include <exiv2/exif.hpp>
#include <exiv2/image.hpp>

#include <algorithm>
#include <stdexcept>
#include <vector>

#include <wx/strconv.h>

namespace {

/// A path that the page can't express is none of a thumbnail's, whatever the file system says.
bool IsInCodePage936(const wxString& path)
{
    const wxCSConv codePage936(wxFONTENCODING_CP936);
    return codePage936.cWC2MB(path.wc_str()).length() > 0;
}

wxBitmapType TypeOf(const std::string& sExtension)
{
    if (sExtension == ".jpg")
        return wxBITMAP_TYPE_JPEG;
    return sExtension == ".tif" ? wxBITMAP_TYPE_TIFF : wxBITMAP_TYPE_ANY;
}

} // namespace

wxImage ReadExifThumbnail(const wxString& path, Exiv2::ExifData& exif, std::string& sReason)
{
    if (!IsInCodePage936(path)) {
        sReason = "code page 936 can't express the name";
        return {};
    }
    const Exiv2Messages messages;
    const auto pImage = OpenMetadata(LS::Util::NarrowPath(path.ToStdWstring()), sReason);
    if (!pImage)
        throw std::runtime_error(sReason);
    exif = pImage->exifData();
    if (exif.empty())
        return {};

    const Exiv2::ExifThumbC thumbnail(exif);
    const std::vector<unsigned char> bytes = BytesOf(thumbnail);
    if (bytes.empty())
        return {};
    DecodedImage decoded =
        DecodeBytes(bytes.data(), bytes.size(), TypeOf(thumbnail.extension()), OrientationOf(exif));
    sReason = decoded.sReason;
    return decoded.image;
}

wxSize ReducedSize(const wxSize& size)
{
    const double fX = static_cast<double>(THUMBNAIL_SIDE) / size.x;
    const double fY = static_cast<double>(THUMBNAIL_SIDE) / size.y;
    if (fX >= 1.0 && fY >= 1.0)
        return size;
    const double fScale = std::min(fX, fY);
    // The library takes no side of 0 pixels, which a picture of 1000 x 1 would come to.
    return {std::max(static_cast<int>(size.x * fScale), 1), std::max(static_cast<int>(size.y * fScale), 1)};
}
