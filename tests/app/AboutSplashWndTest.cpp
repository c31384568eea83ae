// The splash and about window: what ends it, what doesn't, and what it draws.
#include "app/AboutSplashWnd.h"
#include "tests/support/Gui.h"

#include <gtest/gtest.h>
#include <wx/dcmemory.h>
#include <wx/image.h>
#include <wx/stopwatch.h>
#include <wx/uiaction.h>

#include <functional>

using LS::Tests::MoveTo;
using LS::Tests::Pump;

namespace {

constexpr int OWN_END_MS = 51 * 80; // when the splash ends if nobody touches it

class Window : public AboutSplashWnd {
public:
    Window() : AboutSplashWnd(nullptr, wxID_ANY, "About", wxDefaultPosition, wxSize(481, 294)) {}

    /// Ticks beside those of its own timer.
    void Tick(int nTicks)
    {
        wxTimer timer(this);
        wxTimerEvent event(timer);
        while (nTicks-- > 0)
            ProcessWindowEvent(event);
    }

    /// What it shows now.
    wxImage Picture() const
    {
        wxBitmap bitmap;
        bitmap.Create(481, 294);
        wxMemoryDC dc(bitmap);
        Draw(dc);
        dc.SelectObject(wxNullBitmap);
        return bitmap.ConvertToImage();
    }
};

/// Runs the window modally and does something to it once it is on the screen. What doesn't end then is
/// cancelled.
int RunModally(Window& window, const std::function<void()>& action)
{
    window.CallAfter([&window, action] {
        Pump(40);
        window.Raise();
        Pump(20);
        action();
        if (window.IsModal())
            window.EndModal(wxID_CANCEL);
    });
    return window.ShowModal();
}

void Press(Window& window, int nButton)
{
    MoveTo(window, {100, 100});
    wxUIActionSimulator().MouseClick(nButton);
    Pump();
}

void PressKey(Window& window, int nKey)
{
    wxKeyEvent event(wxEVT_CHAR_HOOK);
    event.m_keyCode = nKey;
    event.SetEventObject(&window);
    window.ProcessWindowEvent(event);
    wxUIActionSimulator().Char(nKey); // arrives only where a window manager gives the focus
    Pump();
}

/// Whether there is text: the picture itself is light in the areas that are asked for.
bool HasText(const wxImage& image, const wxRect& area)
{
    for (int y = area.GetTop(); y <= area.GetBottom(); ++y)
        for (int x = area.GetLeft(); x <= area.GetRight(); ++x)
            if (image.GetRed(x, y) < 100 && image.GetGreen(x, y) < 100 && image.GetBlue(x, y) < 100)
                return true;
    return false;
}

} // namespace

TEST(AboutSplashWnd, SplashEndsByItself)
{
    const wxStopWatch watch;
    Window window;
    EXPECT_EQ(wxID_OK, window.ShowModal());
    EXPECT_GE(watch.Time(), OWN_END_MS - 80); // the toolkit counts whole milliseconds
    EXPECT_LT(watch.Time(), 5 * OWN_END_MS);
}

TEST(AboutSplashWnd, SplashEndsByItsTicksAboutRunsOn)
{
    Window splash;
    RunModally(splash, [&] {
        splash.Tick(51);
        EXPECT_FALSE(splash.IsModal());
    });

    Window about;
    about.SetAboutMode();
    RunModally(about, [&] {
        about.Tick(1000);
        EXPECT_TRUE(about.IsModal());
        Press(about, wxMOUSE_BTN_LEFT);
        EXPECT_FALSE(about.IsModal());
    });
}

TEST(AboutSplashWnd, PressOfLeftOrRightButtonEndsItAtOnce)
{
    for (const int nButton : {wxMOUSE_BTN_LEFT, wxMOUSE_BTN_RIGHT}) {
        for (const bool bAbout : {false, true}) {
            SCOPED_TRACE(testing::Message() << "button " << nButton << (bAbout ? " about" : " splash"));
            Window window;
            if (bAbout)
                window.SetAboutMode();
            const int nResult = RunModally(window, [&] {
                EXPECT_TRUE(window.IsModal());
                Press(window, nButton);
                EXPECT_FALSE(window.IsModal());
            });
            EXPECT_EQ(wxID_OK, nResult);
        }
    }
}

TEST(AboutSplashWnd, NothingElseEndsItButEscapeTheAboutBox)
{
    for (const bool bAbout : {false, true}) {
        SCOPED_TRACE(bAbout ? "about" : "splash");
        Window window;
        if (bAbout)
            window.SetAboutMode();
        RunModally(window, [&] {
            Press(window, wxMOUSE_BTN_MIDDLE);
            MoveTo(window, {200, 150});
            for (const int nKey : {WXK_RETURN, WXK_SPACE, WXK_F4}) {
                PressKey(window, nKey);
                EXPECT_TRUE(window.IsModal()) << nKey;
            }
            PressKey(window, WXK_ESCAPE);
            EXPECT_NE(bAbout, window.IsModal());
            Press(window, wxMOUSE_BTN_LEFT);
        });
    }
}

TEST(AboutSplashWnd, CreditsStayInTheirArea)
{
    const wxRect version(270, 68, 130, 12), credits(170, 80, 150, 150);
    const wxRect above(170, 62, 95, 18), below(170, 230, 150, 8), left(156, 95, 14, 130);
    const struct {
        const char* name;
        int ticks;
        bool text; // in the area
    } cases[] = {
        {"below the lower edge", 0, false}, {"over the lower edge", 20, true},
        {"over both edges", 170, true},     {"above the upper edge", 449, false},
        {"at the start again", 451, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Window window;
        window.Tick(100); // what SetAboutMode takes back
        window.SetAboutMode();
        window.Tick(c.ticks);
        const wxImage image = window.Picture();
        EXPECT_TRUE(HasText(image, version));
        EXPECT_EQ(c.text, HasText(image, credits));
        for (const wxRect& outside : {above, below, left})
            EXPECT_FALSE(HasText(image, outside)) << outside.x << ' ' << outside.y;
    }
}

TEST(AboutSplashWnd, TextIsDarkWhateverTheTheme)
{
    EXPECT_EQ(*wxBLACK, Window().GetForegroundColour());
}
