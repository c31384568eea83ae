// Writes pictures with the image library and their tags with Exiv2.
#include "tests/cli/Photographs.h"

#include <exiv2/exiv2.hpp>
#include <wx/image.h>
#include <wx/init.h>

#include <algorithm>

namespace LS::Tests {

namespace {

wxImage Scene(const Photograph& photograph)
{
    wxImage image(photograph.width, photograph.height);
    for (int y = 0; y < photograph.height; ++y)
        for (int x = 0; x < photograph.width; ++x) {
            const double dLevel = 8.0 + 400.0 * (x + y) / (photograph.width + photograph.height);
            const auto byte = [&](double dShare) {
                return static_cast<unsigned char>(std::min(dLevel * dShare * photograph.brightness, 255.0));
            };
            image.SetRGB(x, y, byte(1), byte(0.8), byte(0.6));
        }
    return image;
}

} // namespace

void WritePhotograph(const std::string& sPath, const Photograph& photograph)
{
    const wxInitializer library;
    if (!wxImage::FindHandler(wxBITMAP_TYPE_JPEG))
        wxImage::AddHandler(new wxJPEGHandler);
    Scene(photograph).SaveFile(wxString::FromUTF8(sPath), wxBITMAP_TYPE_JPEG);

    Exiv2::ExifData tags;
    tags["Exif.Image.Make"] = "Lumistrand";
    tags["Exif.Image.Model"] = photograph.camera;
    if (photograph.taken) {
        const std::size_t nPoint = photograph.taken->find('.');
        tags["Exif.Photo.DateTimeOriginal"] = photograph.taken->substr(0, nPoint);
        if (nPoint != std::string::npos)
            tags["Exif.Photo.SubSecTimeOriginal"] = photograph.taken->substr(nPoint + 1);
    }
    if (photograph.exposureTime)
        tags["Exif.Photo.ExposureTime"] = *photograph.exposureTime;
    if (photograph.fNumber)
        tags["Exif.Photo.FNumber"] = *photograph.fNumber;
    const auto file = Exiv2::ImageFactory::open(sPath);
    file->setExifData(tags);
    file->writeMetadata();
}

std::vector<std::string> WriteSeries(const std::string& sFolder, int nWidth, int nHeight)
{
    const Photograph photographs[] = {
        {0.25, "1/240", "8/1", nWidth, nHeight},
        {1, "1/60", "8/1", nWidth, nHeight},
        {4, "1/15", "8/1", nWidth, nHeight},
    };
    std::vector<std::string> vsPaths;
    for (const Photograph& photograph : photographs) {
        vsPaths.push_back(sFolder + "/" + std::string(1, static_cast<char>('a' + vsPaths.size())) + ".jpg");
        WritePhotograph(vsPaths.back(), photograph);
    }
    return vsPaths;
}

} // namespace LS::Tests
