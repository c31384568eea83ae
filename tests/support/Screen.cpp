// Compares pictures; holds the pointer's button.
#include "tests/support/Screen.h"

#include "tests/support/Gui.h"

#include <wx/uiaction.h>

#include <algorithm>
#include <cstdlib>

namespace LS::Tests {

namespace {

std::size_t ByteCount(const wxImage& image)
{
    return static_cast<std::size_t>(image.GetWidth()) * static_cast<std::size_t>(image.GetHeight()) * 3;
}

} // namespace

bool SamePixels(const wxImage& a, const wxImage& b)
{
    return a.IsOk() && b.IsOk() && a.GetSize() == b.GetSize() &&
           std::equal(a.GetData(), a.GetData() + ByteCount(a), b.GetData());
}

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
