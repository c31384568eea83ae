// The command Save: the merged image in 32 bits, or as it is mapped to the screen in 8 bits.
#include "Util/FailureLog.h"
#include "Util/Paths.h"
#include "Util/PixelBuffer.h"
#include "Widgets/SaveHDRImageDlg.h"
#include "engine/HDRRoutine.h"
#include "frame/FileDialogs.h"
#include "frame/JobProgress.h"
#include "frame/LumiStrandHDRFrm.h"
#include "frame/Messages.h"
#include "image/FileBytes.h"
#include "image/LdrSave.h"
#include "xml/Config.h"

#include <array>
#include <optional>

#include <wx/choice.h>
#include <wx/image.h>
#include <wx/intl.h>

namespace {

/// The format that a text of the save dialog, or of the settings, stands for.
std::optional<LdrFormat> FormatOf(const wxString& text)
{
    constexpr std::array<LdrFormat, SAVE_FORMATS.size()> WRITTEN{LdrFormat::Jpeg, LdrFormat::Png,
                                                                 LdrFormat::Tiff, LdrFormat::Bmp};
    for (std::size_t i = 0; i < SAVE_FORMATS.size(); ++i)
        if (text == SAVE_FORMATS[i].szText)
            return WRITTEN[i];
    return text == TARGA_FORMAT ? std::optional(LdrFormat::Targa) : std::nullopt;
}

LdrOptions OptionsOf(const SaveHDRImageDlg& dialog)
{
    return {dialog.m_quality, static_cast<unsigned>(dialog.m_compression), dialog.m_bits == 16};
}

/// Writes the picture as the dialog says.
LdrOutcome Write(wxImage& image, const SaveHDRImageDlg& dialog)
{
    const std::string sPath = FileBytes(dialog.m_path);
    const auto format = FormatOf(dialog.m_format);
    if (format)
        return SaveLdr(image, sPath, *format, OptionsOf(dialog));
    LS::Util::LogFailure("saving a picture", sPath, "the settings name an unknown format");
    return LdrOutcome::Failed;
}

void TellOutcome(LdrOutcome outcome)
{
    switch (outcome) {
    case LdrOutcome::Saved:
        break;
    case LdrOutcome::Failed:
        ShowError(wxGetTranslation("#0002003 Unable to save! Please make sure the driver is writable and "
                                   "non-shared with enough space."));
        break;
    case LdrOutcome::OutOfMemory:
        ShowError(wxGetTranslation("#0005005 Fail to allocate memory!"));
        break;
    case LdrOutcome::Exception:
        ShowError(wxGetTranslation("#0202013 Saving panoramic image error!"));
        break;
    }
}

} // namespace

void LumiStrandHDRFrm::OnSave(wxCommandEvent&)
{
    if (m_bitDepthChoice->GetSelection() == BIT_DEPTH_32)
        SaveHdr();
    else
        SaveLdrPicture();
}

void LumiStrandHDRFrm::SaveHdr()
{
    const auto choice = AskForHdrFile(this, Config::Instance()->m_fullName);
    if (!choice)
        return;
    JobProgress job(this, wxGetTranslation("Save Image"));
    if (SaveHDRFile(FileBytes(choice->path).c_str(), choice->nFormat, &job.Setter()))
        m_modified = false;
}

void LumiStrandHDRFrm::SaveLdrPicture()
{
    SaveHDRImageDlg dialog(this, m_resultImage.get(), wxID_ANY, wxGetTranslation("Save Panoramic Image"));
    if (dialog.ShowModal() != wxID_OK)
        return;
    JobProgress job(this, wxGetTranslation("Saving Image"));
    std::int32_t nWidth = 0, nHeight = 0;
    LS::Util::PixelBuffer pPixels(ToneMapFull(Exposure(), Gamma(), &nWidth, &nHeight, &job.Setter()));
    if (!pPixels)
        return;
    wxImage image(nWidth, nHeight, pPixels.release());
    if (!image.IsOk())
        return;
    m_modified = false; // also if the writing fails
    TellOutcome(Write(image, dialog));
}
