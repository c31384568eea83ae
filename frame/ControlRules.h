// Which commands and controls are on in which state.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

/// What the window holds.
enum class FrameState {
    Empty,         ///< no series was loaded yet
    SourcesLoaded, ///< a series, and no result of it
    Result         ///< a merged image
};

enum class Page : std::uint8_t { SourceImages, ResultImage };

/// New, Exit and the help commands are always on.
struct StateRules {
    bool bCreateHDR;
    bool bSave;
    bool bSourcePage; ///< the controls of that page; its tab can always be clicked
    bool bResultPage;
    Page onTop;
};

StateRules RulesOf(FrameState state);

/// The rows of the source list that are selected.
struct RowSelection {
    bool bAny = false;
    bool bFirst = false; ///< row 0 is selected
    bool bLast = false;  ///< the last row is
};

/// What becomes of the buttons beside the list; nothing leaves a button as it is.
struct ListButtons {
    std::optional<bool> bRemove;
    std::optional<bool> bUp;
    std::optional<bool> bDown;
};

/// At idle time buttons of moves are only taken away.
ListButtons ListButtonsAtIdle(std::size_t nImages, int nRows, const RowSelection& selection);

/// At a selection event they come back, by the top row of the event.
ListButtons ListButtonsAtSelection(std::size_t nImages, int nRows, int nTopRow);

/// The controls of the camera response curve.
struct CurveControls {
    bool bCurveList;
    bool bSaveCheck;
    bool bCurveName;
};

CurveControls CurveControlsFor(bool bUseExisting);

/// Positions of the choice "Bit Depth".
constexpr int BIT_DEPTH_32 = 0;
constexpr int BIT_DEPTH_8 = 1;

/// The sliders steer 8-bit pictures only.
bool ToneSlidersOn(int nBitDepth);

/// Rest positions of the sliders: with them the engine makes the first preview of a merge.
constexpr int EXPOSURE_AT_REST = 0;
constexpr int GAMMA_AT_REST = 22;

/// The exposure in stops, or the gamma, that a slider's position stands for.
float ToneValue(int nPosition);
