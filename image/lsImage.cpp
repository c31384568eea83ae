// The record of one row of the source list.
#include "image/lsImage.h"

#include "image/ExifReader.h"
#include "image/ImageCache.h"

#include <wx/image.h>

lsImage::lsImage(const wxString& sPath, std::int32_t nWidth, std::int32_t nHeight)
    : path(sPath), width(nWidth), height(nHeight)
{
    const ExposureValues defaults;
    exposureTime = defaults.exposureTime;
    fNumber = defaults.fNumber;
    exposureBias = defaults.exposureBias;
}

wxImage* lsImage::LoadPixels()
{
    wxImage* const pImage = ImageCache::Instance()->GetImage(path, false);
    if (pImage) {
        width = pImage->GetWidth();
        height = pImage->GetHeight();
    }
    return pImage;
}
