// The window program as a process of its own, in a program folder of its own.
#pragma once

#include "tests/program/Desktop.h"
#include "tests/support/TempFolder.h"

#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

namespace LS::Tests {

constexpr const char* SPLASH_TITLE = "^Tolvanic Lumistrand$"; ///< also that of every message box
constexpr const char* FRAME_TITLE = "^Tolvanic Lumistrand - Create HDR Image$";
constexpr const char* JOB_TITLE = "^Please wait a moment...$";
constexpr const char* OPEN_DIALOG = "^Open Images$";
constexpr const char* HDR_DIALOG = "^Save Image$";
constexpr const char* PICTURE_DIALOG = "^Save Panoramic Image$";

/// A process of the program. It is killed when this object goes.
class ProgramProcess {
public:
    ProgramProcess() = default; ///< none
    /// @param sOutput  the file that receives both of its streams
    ProgramProcess(const std::string& sProgram, const std::vector<std::string>& vsArguments,
                   const std::map<std::string, std::string>& variables, std::string sOutput);
    ProgramProcess(ProgramProcess&& other) noexcept;
    ProgramProcess& operator=(ProgramProcess&& other) noexcept;
    ProgramProcess(const ProgramProcess&) = delete;
    ProgramProcess& operator=(const ProgramProcess&) = delete;
    ~ProgramProcess();

    /// @return the exit code, 128 + the signal that ended it, or -1 if it still runs after a while
    int WaitForExit();
    bool IsRunning() const;
    pid_t Id() const { return m_nProcess; }
    void Signal(int nSignal) const;

    /// Ends it at once, without a chance to do anything.
    void Kill();

    std::string Output() const; ///< both of its streams

private:
    pid_t m_nProcess = -1;
    std::string m_sOutput;
};

/// A copy of the program with its own folder, home and runtime folder.
class WindowProgram {
public:
    /// @param sFolder, sHome  names of the program's folder and of the home
    explicit WindowProgram(const std::string& sFolder = "program", const std::string& sHome = "home");

    const TempFolder& Folder() const { return m_folder; }
    std::string Home() const { return m_folder.File(m_sHome); }
    std::string File(const std::string& sName) const { return m_folder.File(m_sFolder + "/" + sName); }

    /// Sets an environment variable of all later starts.
    void Set(const std::string& sVariable, const std::string& sValue) { m_variables[sVariable] = sValue; }

    void Start(const std::vector<std::string>& vsArguments = {});

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
    ProgramProcess StartAgain(const std::vector<std::string>& vsArguments = {});

    // The process of the first start.
    int WaitForExit() { return m_first.WaitForExit(); }
    bool IsRunning() const { return m_first.IsRunning(); }
    pid_t Id() const { return m_first.Id(); }
    void Signal(int nSignal) const { m_first.Signal(nSignal); }
    void Kill() { m_first.Kill(); }
    std::string Output() const { return m_first.Output(); }

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
    std::map<std::string, std::string> m_variables;
    int m_nStarts = 0;
    ProgramProcess m_first;
};

} // namespace LS::Tests
