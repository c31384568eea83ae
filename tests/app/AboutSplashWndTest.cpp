// The splash and about window: what ends it, and what doesn't.
#include "app/AboutSplashWnd.h"
#include "tests/support/Gui.h"

#include <gtest/gtest.h>
#include <wx/uiaction.h>

#include <functional>

using namespace LS::Tests;

namespace {

/// Shows the window modally and does something to it. @return whether that ended it
bool Ends(bool bAbout, const std::function<void(AboutSplashWnd&)>& action)
{
    AboutSplashWnd window(nullptr, wxID_ANY, "About", wxDefaultPosition, wxSize(481, 294));
    if (bAbout)
        window.SetAboutMode();
    bool bEnded = false;
    window.CallAfter([&] {
        ShowAndWait(window);
        action(window);
        bEnded = !window.IsModal();
        if (!bEnded)
            window.EndModal(wxID_CANCEL);
    });
    return window.ShowModal() == wxID_OK && bEnded;
}

std::function<void(AboutSplashWnd&)> Button(int nButton)
{
    return [=](AboutSplashWnd& window) {
        MoveTo(window, {100, 100});
        wxUIActionSimulator().MouseClick(nButton);
        Pump();
    };
}

std::function<void(AboutSplashWnd&)> Key(int nKey)
{
    return [=](AboutSplashWnd&) {
        wxUIActionSimulator().Char(nKey);
        Pump();
    };
}

/// Ticks beside those of its own timer.
std::function<void(AboutSplashWnd&)> Ticks(int nTicks)
{
    return [=](AboutSplashWnd& window) {
        wxTimer timer(&window);
        wxTimerEvent event(timer);
        for (int i = 0; i < nTicks; ++i)
            window.ProcessWindowEvent(event);
    };
}

} // namespace

TEST(AboutSplashWnd, EndsByButtonsAndTheSplashByItself)
{
    const struct {
        const char* szWhat;
        std::function<void(AboutSplashWnd&)> action;
        bool bEndsSplash, bEndsAbout;
    } cases[] = {
        {"left button", Button(wxMOUSE_BTN_LEFT), true, true},
        {"right button", Button(wxMOUSE_BTN_RIGHT), true, true},
        {"middle button", Button(wxMOUSE_BTN_MIDDLE), false, false},
        {"Escape", Key(WXK_ESCAPE), false, true},
        {"Return", Key(WXK_RETURN), false, false},
        {"a few ticks", Ticks(30), false, false},
        {"its time", Ticks(51), true, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szWhat);
        EXPECT_EQ(c.bEndsSplash, Ends(false, c.action));
        EXPECT_EQ(c.bEndsAbout, Ends(true, c.action));
    }
}
