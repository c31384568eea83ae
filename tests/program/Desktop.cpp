// Drives the display with xdotool, and takes its picture through the X library.
#include "tests/program/Desktop.h"

#include "tests/support/Process.h"

#include <array>
#include <cstdio>
#include <memory>
#include <sstream>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace LS::Tests {

namespace {

std::string OutputOf(const std::string& sCommand)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen((sCommand + " 2>/dev/null").c_str(), "r"), pclose);
    std::string sOutput;
    std::array<char, 256> buffer{};
    while (pipe && std::fgets(buffer.data(), buffer.size(), pipe.get()))
        sOutput += buffer.data();
    return sOutput;
}

/// @param sCondition  that is to hold too, in the tool's words
std::vector<std::string> WindowsWith(const std::string& sTitle, const std::string& sCondition = "")
{
    std::istringstream found(
        OutputOf("xdotool search --onlyvisible --all " + sCondition + " --name '" + sTitle + "'"));
    std::vector<std::string> vsWindows;
    for (std::string sWindow; found >> sWindow;)
        vsWindows.push_back(sWindow);
    return vsWindows;
}

/// The first such window on the screen; empty without one.
std::string WindowWith(const std::string& sTitle)
{
    const std::vector<std::string> vsWindows = WindowsWith(sTitle);
    return vsWindows.empty() ? std::string() : vsWindows.front();
}

wxRect PlaceOfWindow(const std::string& sWindow)
{
    wxRect place;
    std::sscanf(OutputOf("xdotool getwindowgeometry --shell " + sWindow).c_str(),
                "WINDOW=%*u X=%d Y=%d WIDTH=%d HEIGHT=%d", &place.x, &place.y, &place.width, &place.height);
    return place;
}

wxPoint Middle(const wxRect& rect)
{
    return rect.GetTopLeft() + rect.GetSize() / 2;
}

std::string At(wxPoint point)
{
    return std::to_string(point.x) + " " + std::to_string(point.y);
}

std::unique_ptr<Display, int (*)(Display*)> OpenDisplay()
{
    return {XOpenDisplay(nullptr), XCloseDisplay};
}

} // namespace

int CountWindows(const std::string& sTitle)
{
    return static_cast<int>(WindowsWith(sTitle).size());
}

bool IsOnScreen(const std::string& sTitle)
{
    return !WindowWith(sTitle).empty();
}

bool WaitForWindow(const std::string& sTitle)
{
    return Becomes([&] { return IsOnScreen(sTitle); });
}

bool WaitUntilGone(const std::string& sTitle)
{
    return Becomes([&] { return !IsOnScreen(sTitle); });
}

bool IsActive(const std::string& sTitle)
{
    const std::string sActive = OutputOf("xdotool getactivewindow");
    for (const std::string& sWindow : WindowsWith(sTitle))
        if (sActive == sWindow + "\n")
            return true;
    return false;
}

bool WaitUntilActive(const std::string& sTitle)
{
    return Becomes([&] { return IsActive(sTitle); });
}

bool Activate(const std::string& sTitle)
{
    Do("windowactivate", sTitle);
    return WaitUntilActive(sTitle);
}

wxRect PlaceOf(const std::string& sTitle)
{
    return PlaceOfWindow(WindowWith(sTitle));
}

bool IsOnTop(pid_t nProcess, const std::string& sTitle)
{
    const std::vector<std::string> vsWindows = WindowsWith(sTitle, "--pid " + std::to_string(nProcess));
    if (vsWindows.empty())
        return false;
    const wxPoint at = Middle(PlaceOfWindow(vsWindows.front()));
    const auto display = OpenDisplay();
    Window window = DefaultRootWindow(display.get()); // down to the innermost one
    for (int x = 0, y = 0; window != None && std::to_string(window) != vsWindows.front();)
        XTranslateCoordinates(display.get(), DefaultRootWindow(display.get()), window, at.x, at.y, &x, &y,
                              &window);
    return window != None;
}

void Do(const std::string& sCommand, const std::string& sTitle, const std::string& sArguments)
{
    OutputOf("xdotool " + sCommand + " " + WindowWith(sTitle) + " " + sArguments);
}

void WaitUntilIdle()
{
    const std::string sProcess = OutputOf("xdotool getactivewindow getwindowpid");
    std::string sBefore;
    Becomes([&] {
        // Its state, and how long it has computed.
        const std::string sNow =
            OutputOf("cut -d ' ' -f 3,14,15 /proc/" + sProcess.substr(0, sProcess.find('\n')) + "/stat");
        const bool bIdle = sNow == sBefore && (sNow.empty() || sNow.starts_with('S'));
        sBefore = sNow;
        return bIdle;
    });
}

void PressKeys(const std::vector<std::string>& vsKeys)
{
    for (const std::string& sKey : vsKeys) {
        WaitUntilIdle();
        OutputOf("xdotool key " + sKey);
    }
}

bool PressKeysIn(const std::string& sTitle, const std::vector<std::string>& vsKeys)
{
    if (!WaitUntilActive(sTitle))
        return false;
    PressKeys(vsKeys);
    return true;
}

void TypeText(const std::string& sText)
{
    OutputOf("xdotool type --delay 50 -- '" + sText + "'");
}

void ClickWindow(const std::string& sTitle)
{
    ClickAt(Middle(PlaceOf(sTitle)));
}

void ClickAt(wxPoint at, int nButton)
{
    OutputOf("xdotool mousemove " + At(at) + " click " + std::to_string(nButton));
}

void PressButtonOn(const std::string& sTitle)
{
    OutputOf("xdotool mousemove " + At(Middle(PlaceOf(sTitle))) + " mousedown 1");
}

void ReleaseButtonAt(wxPoint to)
{
    constexpr int STEPS = 5;
    std::string sMoves;
    for (int i = STEPS; i >= 0; --i)
        sMoves += " mousemove " + At(to - wxPoint(4 * i, 4 * i)) + " sleep 0.05";
    OutputOf("xdotool" + sMoves + " mouseup 1");
}

wxImage ScreenPicture(const wxRect& part)
{
    const auto display = OpenDisplay();
    const std::unique_ptr<XImage, int (*)(XImage*)> pixels(
        XGetImage(display.get(), DefaultRootWindow(display.get()), part.x, part.y,
                  static_cast<unsigned>(part.width), static_cast<unsigned>(part.height), AllPlanes, ZPixmap),
        [](XImage* image) { return XDestroyImage(image); });
    wxImage picture(part.GetSize());
    for (int y = 0; y < part.height; ++y)
        for (int x = 0; x < part.width; ++x) {
            const unsigned long nPixel = XGetPixel(pixels.get(), x, y);
            const auto channel = [nPixel](int nShift) {
                return static_cast<unsigned char>(nPixel >> nShift & 0xFF);
            };
            picture.SetRGB(x, y, channel(16), channel(8), channel(0));
        }
    return picture;
}

} // namespace LS::Tests
