// Compares pictures; holds the pointer's button.
#include "tests/support/Screen.h"

#include "tests/support/Gui.h"

#include <wx/uiaction.h>

#include <cstdlib>

namespace LS::Tests {

double MeanDifference(const wxImage& a, const wxImage& b)
{
    double dSum = 0;
    for (std::size_t i = 0; i < ByteCount(a); ++i)
        dSum += std::abs(a.GetData()[i] - b.GetData()[i]);
    return dSum / static_cast<double>(ByteCount(a));
}

HeldButton::HeldButton(wxWindow& window, wxPoint at)
{
    MoveTo(window, at);
    wxUIActionSimulator().MouseDown();
    Pump();
}

HeldButton::~HeldButton()
{
    wxUIActionSimulator().MouseUp();
    Pump();
}

} // namespace LS::Tests
