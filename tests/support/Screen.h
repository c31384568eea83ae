// Comparing what the screen shows, and a pointer that drags.
#pragma once

#include "tests/support/Gui.h"
#include "tests/support/Pixels.h"

#include <wx/uiaction.h>

#include <numeric>

namespace LS::Tests {

/// The mean difference of two pictures of one size, per channel.
inline double MeanDifference(const wxImage& a, const wxImage& b)
{
    const auto difference = [](unsigned char x, unsigned char y) { return x > y ? x - y : y - x; };
    return std::transform_reduce(a.GetData(), a.GetData() + ByteCount(a), b.GetData(), 0.0, std::plus<>(),
                                 difference) /
           static_cast<double>(ByteCount(a));
}

/// Holds the left button down from its making, at a point of a window's client area, to its end.
class HeldButton {
public:
    HeldButton(wxWindow& window, wxPoint at)
    {
        MoveTo(window, at);
        wxUIActionSimulator().MouseDown();
        Pump();
    }
    ~HeldButton()
    {
        wxUIActionSimulator().MouseUp();
        Pump();
    }
    HeldButton(const HeldButton&) = delete;
    HeldButton& operator=(const HeldButton&) = delete;
};

} // namespace LS::Tests
