// Drives the display with xdotool, and takes its picture through the X library.
#include "tests/program/Desktop.h"

#include "tests/program/Waiting.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <thread>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

using namespace std::chrono_literals;

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

std::vector<std::string> WindowsWith(const std::string& sTitle)
{
    std::istringstream found(OutputOf("xdotool search --onlyvisible --name '" + sTitle + "'"));
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

/// A value of the tool's output of lines such as "WIDTH=481"; 0 if it isn't there.
int ValueOf(const std::string& sOutput, const std::string& sName)
{
    const std::size_t nAt = ("\n" + sOutput).find("\n" + sName + "=");
    return nAt == std::string::npos ? 0 : std::atoi(sOutput.c_str() + nAt + sName.size() + 1);
}

wxPoint Middle(const wxRect& rect)
{
    return rect.GetTopLeft() + rect.GetSize() / 2;
}

std::string At(wxPoint point)
{
    return std::to_string(point.x) + " " + std::to_string(point.y);
}

unsigned char Channel(unsigned long nPixel, unsigned nShift)
{
    return static_cast<unsigned char>(nPixel >> nShift & 0xFF);
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

wxRect PlaceOf(const std::string& sTitle)
{
    const std::string sPlace = OutputOf("xdotool getwindowgeometry --shell " + WindowWith(sTitle));
    return {ValueOf(sPlace, "X"), ValueOf(sPlace, "Y"), ValueOf(sPlace, "WIDTH"), ValueOf(sPlace, "HEIGHT")};
}

bool IsOnTop(const std::string& sTitle)
{
    OutputOf("xdotool mousemove " + At(Middle(PlaceOf(sTitle))));
    const int nUnderPointer = ValueOf(OutputOf("xdotool getmouselocation --shell"), "WINDOW");
    return nUnderPointer != 0 && std::to_string(nUnderPointer) == WindowWith(sTitle);
}

void PressKeys(const std::vector<std::string>& vsKeys)
{
    std::this_thread::sleep_for(500ms); // a window that just came up gets the focus a little later
    for (const std::string& sKey : vsKeys) {
        OutputOf("xdotool key " + sKey);
        std::this_thread::sleep_for(300ms);
    }
}

bool PressKeysIn(const std::string& sTitle, const std::vector<std::string>& vsKeys)
{
    if (!WaitUntilActive(sTitle))
        return false;
    for (const std::string& sKey : vsKeys) {
        std::this_thread::sleep_for(100ms); // for a menu or a selection to follow the key before
        OutputOf("xdotool key " + sKey);
    }
    return true;
}

void TypeText(const std::string& sText)
{
    OutputOf("xdotool type --delay 50 -- '" + sText + "'");
}

void ActivateWindow(const std::string& sTitle)
{
    OutputOf("xdotool windowactivate " + WindowWith(sTitle));
}

void ClickWindow(const std::string& sTitle)
{
    ClickAt(Middle(PlaceOf(sTitle)));
}

void ClickAt(wxPoint at, int nButton)
{
    OutputOf("xdotool mousemove " + At(at) + " click " + std::to_string(nButton));
}

OtherProgram::OtherProgram() : m_display(XOpenDisplay(nullptr))
{
    auto* const display = static_cast<Display*>(m_display);
    const Window window =
        XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 200, 100, 0, 0, 0xFFFFFF);
    XStoreName(display, window, "Another program");
    XWMHints takesFocus{};
    takesFocus.flags = InputHint;
    takesFocus.input = True;
    XSetWMHints(display, window, &takesFocus);
    XMapWindow(display, window);
    XSync(display, False);
    WaitUntilActive(TITLE);
}

OtherProgram::~OtherProgram()
{
    XCloseDisplay(static_cast<Display*>(m_display));
}

wxImage ScreenPicture()
{
    return ScreenPicture({});
}

wxImage ScreenPicture(const wxRect& part)
{
    const std::unique_ptr<Display, int (*)(Display*)> display(XOpenDisplay(nullptr), XCloseDisplay);
    if (!display)
        return {};
    const int nScreen = DefaultScreen(display.get());
    const wxRect all(0, 0, DisplayWidth(display.get(), nScreen), DisplayHeight(display.get(), nScreen));
    const wxRect shown = part.IsEmpty() ? all : part.Intersect(all);
    const std::unique_ptr<XImage, int (*)(XImage*)> pixels(
        XGetImage(display.get(), RootWindow(display.get(), nScreen), shown.x, shown.y,
                  static_cast<unsigned>(shown.width), static_cast<unsigned>(shown.height), AllPlanes,
                  ZPixmap),
        [](XImage* image) { return XDestroyImage(image); });
    wxImage picture(shown.GetSize());
    for (int y = 0; pixels && y < shown.height; ++y)
        for (int x = 0; x < shown.width; ++x) {
            const unsigned long nPixel = XGetPixel(pixels.get(), x, y);
            picture.SetRGB(x, y, Channel(nPixel, 16), Channel(nPixel, 8), Channel(nPixel, 0));
        }
    return picture;
}

} // namespace LS::Tests
