// The splash and about window with its credits in several positions.
#include "app/AboutSplashWnd.h"
#include "tests/gallery/Gallery.h"

#include <wx/timer.h>

namespace LS::Gallery {

namespace {

/// The window some ticks after its start; its own timer goes on from there.
AboutSplashWnd* AboutAfter(int nTicks)
{
    auto* const window = new AboutSplashWnd(nullptr, wxID_ANY, "Lumistrand", wxPoint(40, 40));
    window->SetAboutMode();
    wxTimer timer(window);
    wxTimerEvent event(timer);
    while (nTicks-- > 0)
        window->ProcessWindowEvent(event);
    return window;
}

wxTopLevelWindow* Splash()
{
    return new AboutSplashWnd(nullptr, wxID_ANY, "Lumistrand", wxPoint(40, 40));
}

wxTopLevelWindow* AboutFilled()
{
    return AboutAfter(130);
}

wxTopLevelWindow* AboutOverTheEdges()
{
    return AboutAfter(200);
}

} // namespace

std::vector<Page> AboutPages()
{
    return {{"splash", Splash}, {"about-filled", AboutFilled}, {"about-over-the-edges", AboutOverTheEdges}};
}

} // namespace LS::Gallery
