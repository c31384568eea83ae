// The dialogs for the options of JPEG and TIFF files.
#include "Widgets/JPEGCompressionSettings.h"
#include "Widgets/TiffOptionsDlg.h"
#include "tests/gallery/Gallery.h"
#include "tests/support/SamplePicture.h"

#include <wx/choice.h>

namespace LS::Gallery {

namespace {

wxTopLevelWindow* JpegDialog(wxSize picture, int nQuality)
{
    auto* dialog = new JPEGCompressionSettings(nullptr, wxID_ANY, "JPEG Compression Settings");
    dialog->SetImage(SamplePicture(picture), nQuality);
    return dialog;
}

wxTopLevelWindow* TiffDialog()
{
    auto* dialog = new TiffOptionsDlg(nullptr, wxID_ANY, "Tiff Options");
    dialog->m_compressionChoice->SetSelection(2);
    return dialog;
}

} // namespace

std::vector<Page> ComparePages()
{
    return {
        {"jpeg-quality-10",
         [] {
             return JpegDialog({800, 600}, 10);
         }},
        {"jpeg-quality-95",
         [] {
             return JpegDialog({800, 600}, 95);
         }},
        {"jpeg-small-picture",
         [] {
             return JpegDialog({120, 90}, 10);
         }},
        {"tiff-options", TiffDialog},
    };
}

} // namespace LS::Gallery
