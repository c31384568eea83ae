// Comparing what the screen shows, and a pointer that drags.
#pragma once

#include "tests/support/Pixels.h"

#include <wx/window.h>

namespace LS::Tests {

/// The mean difference of two pictures of one size, per channel.
double MeanDifference(const wxImage& a, const wxImage& b);

/// Holds the left button down from its making, at a point of a window's client area, to its end.
class HeldButton {
public:
    HeldButton(wxWindow& window, wxPoint at);
    ~HeldButton();
    HeldButton(const HeldButton&) = delete;
    HeldButton& operator=(const HeldButton&) = delete;
};

} // namespace LS::Tests
