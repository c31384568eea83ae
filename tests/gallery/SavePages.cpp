// The save dialog with each kind of format.
#include "Widgets/SaveHDRImageDlg.h"
#include "tests/gallery/Gallery.h"
#include "tests/support/SamplePicture.h"
#include "xml/Config.h"

namespace LS::Gallery {

namespace {

template <const char* szFormat> wxTopLevelWindow* SaveDialog()
{
    static wxImage picture = SamplePicture({800, 600});
    Config& settings = *Config::Instance();
    settings.m_imageType = szFormat;
    settings.m_fullName = "/home/photographer/Pictures/Lumistrand/output/";
    return new SaveHDRImageDlg(nullptr, &picture, wxID_ANY, "Save Panoramic Image");
}

constexpr char JPEG[] = "JPEG Image Format (*.jpeg;*.jpg)";
constexpr char PNG[] = "Portable Network Graphics (*.png)";
constexpr char TIFF[] = "Tiff Image Format (*.tiff;*.tif)";
constexpr char TARGA[] = "Targa Files (*.tga)";

} // namespace

std::vector<Page> SavePages()
{
    return {
        {"save-jpeg", SaveDialog<JPEG>},
        {"save-png", SaveDialog<PNG>},
        {"save-tiff", SaveDialog<TIFF>},
        {"save-unlisted-format", SaveDialog<TARGA>},
    };
}

} // namespace LS::Gallery
