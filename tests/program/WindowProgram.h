// The window program as a process of its own, in a program folder of its own.
#pragma once

#include "tests/program/Desktop.h"
#include "tests/support/Process.h"
#include "tests/support/TempFolder.h"

#include <string>
#include <vector>

namespace LS::Tests {

constexpr int REFUSED = 255;                                  ///< how a start ends that can't go on
constexpr const char* SPLASH_TITLE = "^Tolvanic Lumistrand$"; ///< also that of every message box
constexpr const char* FRAME_TITLE = "^Tolvanic Lumistrand - Create HDR Image$";
constexpr const char* JOB_TITLE = "^Please wait a moment...$";
constexpr const char* OPEN_DIALOG = "^Open Images$";
constexpr const char* HDR_DIALOG = "^Save Image$";
constexpr const char* PICTURE_DIALOG = "^Save Panoramic Image$";
constexpr const char* OTHER_TITLE = "^Drag source$";

/// A copy of the program with its own folder, home and runtime folder, and the process of its first start.
class WindowProgram : public Process {
public:
    /// @param sFolder, sHome  names of the program's folder and of the home
    explicit WindowProgram(const std::string& sFolder = "program", const std::string& sHome = "home");
    ~WindowProgram() { Kill(); } // before its folder goes

    const TempFolder& Folder() const { return m_folder; }
    std::string Home() const { return m_folder.File(m_sHome); }
    std::string File(const std::string& sName) const { return m_folder.File(m_sFolder + "/" + sName); }

    /// Sets an environment variable of all later starts, NAME=VALUE.
    void Set(const std::string& sVariable) { m_vsVariables.push_back(sVariable); }

    void Start(const std::vector<std::string>& vsArguments = {})
    {
        Process::operator=(StartAgain(vsArguments));
    }

    /// Starts it, clicks the splash away and waits for the main window. @return whether that came
    bool StartToMainWindow(const std::vector<std::string>& vsArguments = {});

    /// Writes a series of three photographs. @return the argument that opens it
    std::string SeriesArgument(int nWidth, int nHeight) const;

    /// Starts it to its main window with such a series. @return whether that is active
    bool StartWithSeries(int nWidth = 320, int nHeight = 240);

    /// Gives the command to merge by keys.
    static bool GiveMergeCommand() { return PressKeysIn(FRAME_TITLE, {"alt+e", "Return"}); }

    /// The same, and waits until it is done. @return whether the window is active again
    bool Merge() const;

    /// One more start of the same program by the same user.
    Process StartAgain(const std::vector<std::string>& vsArguments = {});

    /// Another program with a window, which gets the focus. A file can be dragged from it.
    Process StartOther(const std::string& sFile = "") const;

    std::string Log() const;
    std::vector<std::string> LogLines() const;

    /// What the cache folder holds; nothing if it isn't there.
    std::vector<std::string> CacheFiles() const;

    /// What the single-instance service keeps while the program runs, and leaves only if it crashes.
    std::vector<std::string> LocksAndSockets() const;

    /// Fails the test if there are such or files in the cache folder.
    void ExpectNothingLeft() const;

private:
    TempFolder m_folder;
    std::string m_sFolder, m_sHome;
    std::vector<std::string> m_vsVariables;
    int m_nStarts = 0;
};

} // namespace LS::Tests
