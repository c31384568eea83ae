// Starts the window program and drives it with xdotool.
#include "tests/program/WindowProgram.h"

#include "tests/support/TestProcess.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace LS::Tests {

namespace {

constexpr auto PATIENCE = 30s; // sanitizers are slow

/// Asks until the answer is yes, or patience ends.
template <typename Question> bool Becomes(const Question& question)
{
    const auto end = std::chrono::steady_clock::now() + PATIENCE;
    while (!question()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(50ms);
    }
    return true;
}

std::string OutputOf(const std::string& sCommand)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen((sCommand + " 2>/dev/null").c_str(), "r"), pclose);
    std::string sOutput;
    std::array<char, 256> buffer{};
    while (pipe && std::fgets(buffer.data(), buffer.size(), pipe.get()))
        sOutput += buffer.data();
    return sOutput;
}

/// The number of the first such window on the screen; empty without one.
std::string WindowWith(const std::string& sTitle)
{
    const std::string sFound = OutputOf("xdotool search --onlyvisible --name '" + sTitle + "'");
    return sFound.substr(0, sFound.find('\n'));
}

} // namespace

WindowProgram::WindowProgram()
{
    for (const char* szFolder : {"program/curve", "home", "runtime"})
        fs::create_directories(m_folder.File(szFolder));
    fs::permissions(m_folder.File("runtime"), fs::perms::owner_all);
    fs::copy_file(LS_WINDOW_PROGRAM, File("lumistrand-hdr"));
}

WindowProgram::~WindowProgram()
{
    Kill();
}

void WindowProgram::Kill()
{
    if (m_nProcess < 0)
        return;
    kill(m_nProcess, SIGKILL); // leaves the status of a process that has ended as it is
    waitpid(m_nProcess, nullptr, 0);
    m_nProcess = -1;
}

void WindowProgram::Start(const std::vector<std::string>& vsArguments)
{
    const std::string sProgram = File("lumistrand-hdr");
    const std::string sHome = m_folder.File("home"), sRuntime = m_folder.File("runtime");
    const std::string sOutput = m_folder.File("output"), sLeaks = m_folder.File("leaks");
    const std::string sLeakOptions = "print_suppressions=0:suppressions=" + sLeaks;
    WriteText(sLeaks, LeaksOfLibraries());
    std::vector<char*> vszArguments{const_cast<char*>(sProgram.c_str())};
    for (const std::string& sArgument : vsArguments)
        vszArguments.push_back(const_cast<char*>(sArgument.c_str()));
    vszArguments.push_back(nullptr);

    m_nProcess = fork();
    if (m_nProcess < 0)
        throw std::runtime_error("fork");
    if (m_nProcess > 0)
        return;
    const int nOutput = open(sOutput.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(nOutput, STDOUT_FILENO);
    dup2(nOutput, STDERR_FILENO);
    setenv("HOME", sHome.c_str(), 1);
    setenv("XDG_RUNTIME_DIR", sRuntime.c_str(), 1);
    setenv("LSAN_OPTIONS", sLeakOptions.c_str(), 1); // the sanitized program reads it
    execv(sProgram.c_str(), vszArguments.data());
    _exit(126);
}

bool WindowProgram::StartToMainWindow(const std::vector<std::string>& vsArguments)
{
    Start(vsArguments);
    if (!WaitForWindow(SPLASH_TITLE))
        return false;
    ClickWindow(SPLASH_TITLE);
    return WaitForWindow(FRAME_TITLE);
}

bool WindowProgram::IsRunning()
{
    if (m_nProcess < 0)
        return false;
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(m_nProcess), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == 0;
}

int WindowProgram::WaitForExit()
{
    if (!Becomes([this] { return !IsRunning(); }))
        return -1;
    int nStatus = 0;
    waitpid(m_nProcess, &nStatus, 0);
    m_nProcess = -1;
    return WIFSIGNALED(nStatus) ? 128 + WTERMSIG(nStatus) : WEXITSTATUS(nStatus);
}

std::string WindowProgram::Output() const
{
    return ReadText(m_folder.File("output"));
}

std::string WindowProgram::Log() const
{
    return ReadText(File("HDRLog.log"));
}

std::vector<std::string> WindowProgram::LogLines() const
{
    std::vector<std::string> vsLines;
    std::istringstream log(Log());
    for (std::string sLine; std::getline(log, sLine);)
        vsLines.push_back(sLine);
    return vsLines;
}

std::vector<std::string> WindowProgram::LocksAndSockets() const
{
    std::vector<std::string> vsNames;
    for (const char* szFolder : {"home", "runtime"})
        for (const auto& entry : fs::directory_iterator(m_folder.File(szFolder)))
            if (entry.is_socket() || entry.path().filename().string().starts_with("LumiStrandHDR-"))
                vsNames.push_back(entry.path().filename());
    return vsNames;
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

void PressKeys(const std::vector<std::string>& vsKeys)
{
    std::this_thread::sleep_for(500ms); // a window that just came up gets the focus a little later
    for (const std::string& sKey : vsKeys) {
        OutputOf("xdotool key " + sKey);
        std::this_thread::sleep_for(300ms);
    }
}

void ClickWindow(const std::string& sTitle)
{
    const std::string sWindow = WindowWith(sTitle);
    OutputOf("eval $(xdotool getwindowgeometry --shell " + sWindow +
             "); xdotool mousemove $((X + WIDTH / 2)) $((Y + HEIGHT / 2)) click 1");
}

} // namespace LS::Tests
