// Which commands and controls are on in which state.
#include "frame/ControlRules.h"

StateRules RulesOf(FrameState state)
{
    switch (state) {
    case FrameState::Result:
        return {true, true, true, true, Page::ResultImage};
    case FrameState::SourcesLoaded:
        return {true, false, true, false, Page::SourceImages};
    case FrameState::Empty:
        break;
    }
    return {false, false, false, false, Page::SourceImages};
}

ListButtons ListButtonsAtIdle(std::size_t nImages, int nRows, const RowSelection& selection)
{
    if (nImages == 0)
        return {false, false, false};
    ListButtons buttons;
    buttons.bRemove = true;
    if (!selection.bAny)
        return buttons;
    if (nRows == 1 || selection.bFirst)
        buttons.bUp = false;
    if (nRows == 1 || selection.bLast)
        buttons.bDown = false;
    return buttons;
}

ListButtons ListButtonsAtSelection(std::size_t nImages, int nRows, int nTopRow)
{
    if (nImages == 0)
        return {};
    return {std::nullopt, nTopRow != 0, nTopRow != nRows - 1};
}

CurveControls CurveControlsFor(bool bUseExisting)
{
    return {bUseExisting, !bUseExisting, !bUseExisting};
}

bool ToneSlidersOn(int nBitDepth)
{
    return nBitDepth != BIT_DEPTH_32;
}

float ToneValue(int nPosition)
{
    return static_cast<float>(nPosition / 10.0);
}
