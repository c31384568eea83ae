// Drives the display with xdotool, and takes its picture through the X library.
#include "tests/program/Desktop.h"

#include "tests/program/Waiting.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <stdexcept>

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

/// A value of the tool's output of lines such as "WIDTH=481"; 0 if it isn't there.
int ValueOf(const std::string& sOutput, const std::string& sName)
{
    const std::size_t nAt = ("\n" + sOutput).find("\n" + sName + "=");
    return nAt == std::string::npos ? 0 : std::atoi(sOutput.c_str() + nAt + sName.size() + 1);
}

/// How long a process has computed, in the kernel's ticks.
std::string ComputingTime(const std::string& sProcess)
{
    std::ifstream status("/proc/" + sProcess + "/stat");
    std::string sText;
    std::getline(status, sText);
    std::istringstream fields(sText.substr(std::min(sText.rfind(')') + 1, sText.size())));
    const std::vector<std::string> vsFields{std::istream_iterator<std::string>(fields), {}};
    return vsFields.size() > 12 ? vsFields[11] + " " + vsFields[12] + " " + vsFields[0] : std::string();
}

wxRect PlaceOfWindow(const std::string& sWindow)
{
    const std::string sPlace = OutputOf("xdotool getwindowgeometry --shell " + sWindow);
    return {ValueOf(sPlace, "X"), ValueOf(sPlace, "Y"), ValueOf(sPlace, "WIDTH"), ValueOf(sPlace, "HEIGHT")};
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
    std::unique_ptr<Display, int (*)(Display*)> display(XOpenDisplay(nullptr), XCloseDisplay);
    if (!display)
        throw std::runtime_error("no display");
    return display;
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

bool Activate(const std::string& sTitle)
{
    OutputOf("xdotool windowactivate " + WindowWith(sTitle));
    return WaitUntilActive(sTitle);
}

wxRect PlaceOf(const std::string& sTitle)
{
    return PlaceOfWindow(WindowWith(sTitle));
}

bool IsOnTop(pid_t nProcess, const std::string& sTitle)
{
    const std::string sProcess = std::to_string(nProcess);
    const std::vector<std::string> vsWindows = WindowsWith(sTitle, "--pid " + sProcess);
    if (vsWindows.empty())
        return false;
    const wxPoint at = Middle(PlaceOfWindow(vsWindows.front()));
    const auto display = OpenDisplay();
    const Window wanted = std::stoul(vsWindows.front());
    Window window = DefaultRootWindow(display.get()); // down to the innermost one
    while (window != None && window != wanted) {
        Window child = None;
        int x = 0, y = 0;
        XTranslateCoordinates(display.get(), DefaultRootWindow(display.get()), window, at.x, at.y, &x, &y,
                              &child);
        window = child;
    }
    return window == wanted;
}

void MoveWindow(const std::string& sTitle, wxPoint to)
{
    OutputOf("xdotool windowmove --sync " + WindowWith(sTitle) + " " + At(to));
}

void Minimize(const std::string& sTitle)
{
    OutputOf("xdotool windowminimize " + WindowWith(sTitle));
}

void WaitUntilIdle()
{
    std::istringstream active(OutputOf("xdotool getactivewindow getwindowpid"));
    std::string sProcess;
    if (!(active >> sProcess))
        return;
    std::string sBefore;
    Becomes([&] {
        const std::string sNow = ComputingTime(sProcess);
        const bool bIdle = sNow == sBefore && sNow.ends_with('S');
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

void CutConnection(const std::string& sTitle)
{
    OutputOf("xdotool windowkill " + WindowWith(sTitle));
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

wxImage ScreenPicture(const wxRect& part)
{
    const auto display = OpenDisplay();
    const int nScreen = DefaultScreen(display.get());
    const wxRect all(0, 0, DisplayWidth(display.get(), nScreen), DisplayHeight(display.get(), nScreen));
    const wxRect shown = part.Intersect(all);
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
