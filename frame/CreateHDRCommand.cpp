// The command Create HDR Image: settles the curve, refuses what can't work, converts, merges, shows.
#include "Util/FailureLog.h"
#include "Util/Paths.h"
#include "Util/PixelBuffer.h"
#include "Widgets/ReplaceQuestion.h"
#include "Widgets/StaticPicture.h"
#include "engine/CacheFolder.h"
#include "engine/HDRRoutine.h"
#include "engine/OwnedCurves.h"
#include "frame/JobProgress.h"
#include "frame/LumiStrandHDRFrm.h"
#include "frame/MergeInput.h"
#include "frame/Messages.h"
#include "frame/SavedCurves.h"
#include "image/FileBytes.h"

#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/filefn.h>
#include <wx/grid.h>
#include <wx/image.h>
#include <wx/intl.h>
#include <wx/msgdlg.h>
#include <wx/panel.h>
#include <wx/textctrl.h>

namespace {

/// Merges what is converted. @return the first preview; an invalid image after a failure or a cancel
wxImage MergeToPreview(const MergeInput& input, PixelSize size, OwnedCurves& curves, ProgbarSetter& progress)
{
    std::int32_t nWidth = 0, nHeight = 0;
    LS::Util::PixelBuffer pPixels(CreateHDRImage(input.vsLDRFiles, size.width, size.height, input.vfShutters,
                                                 input.vfStops, input.vfGains, input.vfNDs, curves.Get(),
                                                 &nWidth, &nHeight, &progress));
    if (!pPixels)
        return {};
    curves.Release();
    return {nWidth, nHeight, pPixels.release()};
}

} // namespace

void LumiStrandHDRFrm::OnCreateHDR(wxCommandEvent&)
{
    m_grid->DisableCellEditControl(); // what stands in an open cell counts
    OwnedCurves curves;
    wxString newCurvePath;
    if (!SettleCurve(curves, newCurvePath) || !CheckExposures())
        return;
    const MergeInput input = CollectMergeInput(m_images);
    if (input.vsLDRFiles.empty())
        return;
    if (!CreateCacheFolder())
        LS::Util::LogFailure("creating the cache folder", LS::Util::NarrowPath(CacheFolder()),
                             LS::Util::SystemError());

    JobProgress job(this, wxGetTranslation("Creating HDR Image"));
    ProgbarSetter conversion(&job.Setter(), 0, 30);
    ConvertSources(m_images, conversion);
    const std::vector<PixelSize> sizes = TickedSizes(m_images);
    if (FindDifferentSizes(sizes)) {
        ShowError(wxGetTranslation("Can not create HDR image from different resolution images."));
        return;
    }
    ProgbarSetter merge(&job.Setter(), 31, 100);
    const wxImage preview = MergeToPreview(input, sizes.back(), curves, merge);
    if (!preview.IsOk()) {
        LoseResult();
        return;
    }
    m_resultImage = std::make_unique<wxImage>(preview);
    ShowResult();
    if (m_saveCurveCheck->IsThisEnabled() && m_saveCurveCheck->GetValue())
        KeepCurve(newCurvePath);
}

/// Loads the curve to merge with, or settles where the recovered one is to be kept. Each refusal is told.
/// @param curves  stay empty where they shall be recovered
/// @return whether to go on
bool LumiStrandHDRFrm::SettleCurve(OwnedCurves& curves, wxString& newCurvePath) const
{
    if (m_curveChoice->IsThisEnabled())
        return m_curveChoice->GetSelection() == 0 ? LoadCurves(nullptr, curves.Get())
                                                  : LoadSavedCurve(curves);
    return !m_saveCurveCheck->GetValue() || SettleNewCurve(newCurvePath);
}

bool LumiStrandHDRFrm::LoadSavedCurve(OwnedCurves& curves) const
{
    const wxString path = CurvePath(m_curveChoice->GetStringSelection());
    if (!wxFileExists(path)) {
        ShowError(wxGetTranslation("#0201010 Can not locate specified curve file."));
        return false;
    }
    if (!LoadCurves(FileBytes(path).c_str(), curves.Get())) {
        ShowError(wxGetTranslation("#0201008 Invalid file. Unable to be identified."));
        return false;
    }
    return true;
}

bool LumiStrandHDRFrm::SettleNewCurve(wxString& path) const
{
    const wxString name = m_curveNameText->GetValue();
    if (!IsCurveName(name)) { // the field lets pasted characters through
        ShowError(wxGetTranslation("#0002007 Please specify the file name."));
        return false;
    }
    path = CurvePath(name + ".crv");
    return MayBeWritten(nullptr, path,
                        wxGetTranslation("#0002002 File %s already exists, would you like to replace it? "),
                        wxICON_ERROR);
}

/// Refuses ticked rows that don't differ in exposure, and a recovery from one image.
bool LumiStrandHDRFrm::CheckExposures() const
{
    const std::vector<ExposureSetting> exposures = TickedExposures(m_images);
    if (FindEqualExposures(exposures)) {
        ShowError(wxGetTranslation("#0203006 Please make sure that every panoramic image has complete "
                                   "exposure information. "));
        return false;
    }
    const bool bRecovery = !m_curveChoice->IsThisEnabled();
    if (bRecovery && exposures.size() == 1) {
        ShowError(
            wxGetTranslation("Please select at least two images to calculate the camera response curve."));
        return false;
    }
    return true;
}

void LumiStrandHDRFrm::ShowResult()
{
    ShowState(FrameState::Result);
    m_modified = true;
    m_resultPanel->Layout(); // it may never have been on show, and the picture shrinks to its control
    m_preview->SetImage(m_resultImage.get());
    CallAfter([this] { m_bitDepthChoice->SetFocus(); }); // once the job is over: Tab doesn't lead into a page
}

/// The engine has given up the older result for a merge that then failed: its picture stays to look at, but
/// nothing is left to save.
void LumiStrandHDRFrm::LoseResult()
{
    EnableCommand(wxID_SAVE, false);
    m_modified = false;
}

/// Saves the curves of the latest merge, and shows them in the list.
void LumiStrandHDRFrm::KeepCurve(const wxString& path)
{
    if (!SaveCurves(FileBytes(path).c_str()))
        return;
    const wxString selected = m_curveChoice->GetStringSelection();
    FillCurveList();
    m_curveChoice->SetStringSelection(selected);
}

void LumiStrandHDRFrm::FillCurveList()
{
    m_curveChoice->Clear();
    m_curveChoice->Append(wxGetTranslation("Standard"));
    m_curveChoice->Append(SavedCurveNames());
    m_curveChoice->GetParent()->Layout(); // the list is as wide as its longest entry, as far as the page goes
}
