// The window program as a process of its own, in a program folder of its own.
#pragma once

#include "tests/support/TempFolder.h"

#include <string>
#include <sys/types.h>
#include <vector>

namespace LS::Tests {

/// Titles as regular expressions of the tool that drives the windows.
constexpr const char* SPLASH_TITLE = "^Tolvanic Lumistrand$";
constexpr const char* FRAME_TITLE = "^Tolvanic Lumistrand - Create HDR Image$";

/// A copy of the program with its own folder, home and runtime folder. Ends the process when it goes.
class WindowProgram {
public:
    WindowProgram();
    WindowProgram(const WindowProgram&) = delete;
    WindowProgram& operator=(const WindowProgram&) = delete;
    ~WindowProgram();

    const TempFolder& Folder() const { return m_folder; }
    std::string File(const std::string& sName) const { return m_folder.File("program/" + sName); }

    void Start(const std::vector<std::string>& vsArguments = {});

    /// Starts it, clicks the splash away and waits for the main window. @return whether that came
    bool StartToMainWindow(const std::vector<std::string>& vsArguments = {});

    /// @return the exit code, 128 + the signal that ended it, or -1 if it still runs after a while
    int WaitForExit();
    bool IsRunning();

    /// Ends it at once, without a chance to do anything.
    void Kill();

    std::string Output() const; ///< both of its streams
    std::string Log() const;
    std::vector<std::string> LogLines() const;

    /// What the single-instance service keeps while the program runs, and leaves only if it crashes.
    std::vector<std::string> LocksAndSockets() const;

private:
    TempFolder m_folder;
    pid_t m_nProcess = -1;
};

/// Waits until a window with such a title is on the screen. @return whether it came
bool WaitForWindow(const std::string& sTitle);
bool WaitUntilGone(const std::string& sTitle);
bool IsOnScreen(const std::string& sTitle);

/// Presses keys such as "ctrl+q", in the window that has the focus.
void PressKeys(const std::vector<std::string>& vsKeys);

/// Clicks into the middle of a window.
void ClickWindow(const std::string& sTitle);

} // namespace LS::Tests
