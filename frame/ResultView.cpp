// The page with the result: bit depth and tone sliders.
#include "Util/PixelBuffer.h"
#include "Widgets/StaticPicture.h"
#include "engine/HDRRoutine.h"
#include "frame/LumiStrandHDRFrm.h"

#include <wx/image.h>
#include <wx/slider.h>
#include <wx/utils.h>

#include <utility>

namespace {

/// One recompute when a drag ends or a page is stepped, none while the thumb moves or an arrow key is
/// pressed.
bool EndsAMove(wxEventType type)
{
    return type == wxEVT_SCROLL_PAGEUP || type == wxEVT_SCROLL_PAGEDOWN || type == wxEVT_SCROLL_THUMBRELEASE;
}

} // namespace

float LumiStrandHDRFrm::Exposure() const
{
    return ToneValue(m_exposureSlider->GetValue());
}

float LumiStrandHDRFrm::Gamma() const
{
    return ToneValue(m_gammaSlider->GetValue());
}

void LumiStrandHDRFrm::OnBitDepth(wxCommandEvent& event)
{
    const bool bOn = ToneSlidersOn(event.GetSelection());
    m_exposureSlider->Enable(bOn);
    m_gammaSlider->Enable(bOn);
}

void LumiStrandHDRFrm::OnToneSlider(wxScrollEvent& event)
{
    const wxEventType type = event.GetEventType();
    const bool bNamed =
        std::exchange(m_moveNamed, type != wxEVT_SCROLL_CHANGED && type != wxEVT_SCROLL_THUMBTRACK);
    const bool bWheel = type == wxEVT_SCROLL_CHANGED && !bNamed; // each other move has a name
    if (!bWheel && !EndsAMove(type))
        return;
    const wxBusyCursor busy;
    std::int32_t nWidth = 0, nHeight = 0;
    LS::Util::PixelBuffer pPixels(ToneMapScaled(Exposure(), Gamma(), &nWidth, &nHeight));
    if (!pPixels)
        return;
    const wxImage image(nWidth, nHeight, pPixels.release());
    if (!image.IsOk())
        return;
    m_preview->SetImage(&image);
    m_modified = true;
}
