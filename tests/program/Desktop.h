// What a user sees and does on the display, from outside every program.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

#include <wx/gdicmn.h>
#include <wx/image.h>

namespace LS::Tests {

// Titles are regular expressions of the tool that drives the windows.

/// Waits until a window with such a title is on the screen. @return whether it came
bool WaitForWindow(const std::string& sTitle);
bool WaitUntilGone(const std::string& sTitle);
bool IsOnScreen(const std::string& sTitle);

bool IsActive(const std::string& sTitle);

/// Waits until such a window is the active one: only then it gets the keys. @return whether it became that
bool WaitUntilActive(const std::string& sTitle);

/// Makes it that, as a click on its title does.
bool Activate(const std::string& sTitle);

/// How many windows on the screen have such a title.
int CountWindows(const std::string& sTitle);

/// Where a window stands on the screen, without its decorations. Empty without such a window.
wxRect PlaceOf(const std::string& sTitle);

/// Whether a process shows such a window, and nothing of another process covers its middle.
bool IsOnTop(pid_t nProcess, const std::string& sTitle);

/// A command of the tool on a window, such as "windowminimize".
void Do(const std::string& sCommand, const std::string& sTitle, const std::string& sArguments = "");

/// Waits until the program of the active window has done with what came before: a menu that opens, a window
/// that comes up. It is asleep then, and stays so for a while.
void WaitUntilIdle();

/// Presses keys such as "ctrl+q", in the window that has the focus. Waits before each until it is idle.
void PressKeys(const std::vector<std::string>& vsKeys);

/// The same, once such a window is the active one. @return whether it became that
bool PressKeysIn(const std::string& sTitle, const std::vector<std::string>& vsKeys);

/// Types a text into the window that has the focus.
void TypeText(const std::string& sText);

/// Clicks into the middle of a window.
void ClickWindow(const std::string& sTitle);

/// Clicks at a point of the screen. @param nButton  1: left, 4 and 5: a notch of the wheel up and down
void ClickAt(wxPoint at, int nButton = 1);

/// The beginning of a drag, in the middle of a window, and its end: in steps, since those who take part
/// answer each other in their own loops.
void PressButtonOn(const std::string& sTitle);
void ReleaseButtonAt(wxPoint to);

/// What a part of the screen shows.
wxImage ScreenPicture(const wxRect& part);

} // namespace LS::Tests
