// Where an image button puts its picture and its label.
#pragma once

#include <wx/gdicmn.h>

namespace LS::Widgets {

enum class LabelPlace { Left, Right, Top, Bottom };

/// What an image button has to place. Sizes are bare, margins lie around them on all sides.
struct ImageButtonParts {
    LabelPlace place = LabelPlace::Bottom;
    wxSize picture; ///< 0 x 0 for none
    wxSize label;   ///< 0 x 0 for none
    wxSize pictureMargin;
    wxSize labelMargin;

    bool HasPicture() const { return picture.x > 0 && picture.y > 0; }
    bool HasLabel() const { return label.x > 0; }
};

struct ImageButtonPositions {
    wxPoint picture;
    wxPoint label;
};

/// The size in which the parts just fit. Picture and label share the smaller of their margins.
wxSize ImageButtonBestSize(const ImageButtonParts& parts);

/// Centres the parts in an area, with the larger of their margins between picture and label. An area that is
/// too small gives negative positions.
ImageButtonPositions PlaceImageButton(const ImageButtonParts& parts, wxSize area);

} // namespace LS::Widgets
