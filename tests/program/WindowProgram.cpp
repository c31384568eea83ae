// Starts the window program as a user's desktop does.
#include "tests/program/WindowProgram.h"

#include "tests/cli/Photographs.h"
#include "tests/program/Waiting.h"
#include "tests/support/TestProcess.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace LS::Tests {

ProgramProcess::ProgramProcess(const std::string& sProgram, const std::vector<std::string>& vsArguments,
                               const std::map<std::string, std::string>& variables, std::string sOutput)
    : m_sOutput(std::move(sOutput))
{
    std::vector<char*> vszArguments{const_cast<char*>(sProgram.c_str())};
    for (const std::string& sArgument : vsArguments)
        vszArguments.push_back(const_cast<char*>(sArgument.c_str()));
    vszArguments.push_back(nullptr);

    m_nProcess = fork();
    if (m_nProcess < 0)
        throw std::runtime_error("fork");
    if (m_nProcess > 0)
        return;
    const int nOutput = open(m_sOutput.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(nOutput, STDOUT_FILENO);
    dup2(nOutput, STDERR_FILENO);
    for (const auto& [sName, sValue] : variables)
        setenv(sName.c_str(), sValue.c_str(), 1);
    execv(sProgram.c_str(), vszArguments.data());
    _exit(126);
}

ProgramProcess::ProgramProcess(ProgramProcess&& other) noexcept
    : m_nProcess(std::exchange(other.m_nProcess, -1)), m_sOutput(std::move(other.m_sOutput))
{
}

ProgramProcess& ProgramProcess::operator=(ProgramProcess&& other) noexcept
{
    std::swap(m_nProcess, other.m_nProcess);
    std::swap(m_sOutput, other.m_sOutput);
    return *this;
}

ProgramProcess::~ProgramProcess()
{
    Kill();
}

void ProgramProcess::Signal(int nSignal) const
{
    if (m_nProcess > 0)
        kill(m_nProcess, nSignal);
}

void ProgramProcess::Kill()
{
    if (m_nProcess < 0)
        return;
    Signal(SIGKILL); // leaves the status of a process that has ended as it is
    waitpid(m_nProcess, nullptr, 0);
    m_nProcess = -1;
}

bool ProgramProcess::IsRunning() const
{
    if (m_nProcess < 0)
        return false;
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(m_nProcess), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == 0;
}

int ProgramProcess::WaitForExit()
{
    if (!Becomes([this] { return !IsRunning(); }))
        return -1;
    int nStatus = 0;
    waitpid(m_nProcess, &nStatus, 0);
    m_nProcess = -1;
    return WIFSIGNALED(nStatus) ? 128 + WTERMSIG(nStatus) : WEXITSTATUS(nStatus);
}

std::string ProgramProcess::Output() const
{
    return ReadText(m_sOutput);
}

WindowProgram::WindowProgram(const std::string& sFolder, const std::string& sHome)
    : m_sFolder(sFolder), m_sHome(sHome)
{
    for (const std::string& sName : {sFolder + "/curve", sHome, std::string("runtime")})
        fs::create_directories(m_folder.File(sName));
    fs::permissions(m_folder.File("runtime"), fs::perms::owner_all);
    fs::copy_file(LS_WINDOW_PROGRAM, File("lumistrand-hdr"));
    WriteText(m_folder.File("leaks"), LeaksOfLibraries());
    m_variables = {{"HOME", Home()},
                   {"XDG_RUNTIME_DIR", m_folder.File("runtime")},
                   // The sanitized program reads it.
                   {"LSAN_OPTIONS", "print_suppressions=0:suppressions=" + m_folder.File("leaks")}};
}

void WindowProgram::Start(const std::vector<std::string>& vsArguments)
{
    m_first = StartAgain(vsArguments);
}

ProgramProcess WindowProgram::StartAgain(const std::vector<std::string>& vsArguments)
{
    const std::string sOutput = m_folder.File("output" + std::to_string(m_nStarts++));
    return {File("lumistrand-hdr"), vsArguments, m_variables, sOutput};
}

bool WindowProgram::StartToMainWindow(const std::vector<std::string>& vsArguments)
{
    Start(vsArguments);
    if (!WaitForWindow(SPLASH_TITLE))
        return false;
    ClickWindow(SPLASH_TITLE);
    if (!WaitForWindow(FRAME_TITLE))
        return false;
    WaitUntilIdle(); // files of the command line come when the window stands in its place
    return true;
}

std::string WindowProgram::SeriesArgument(int nWidth, int nHeight) const
{
    std::string sArgument = "open";
    for (const std::string& sPath : WriteSeries(m_folder.Path(), nWidth, nHeight))
        sArgument += "|" + sPath;
    return sArgument;
}

bool WindowProgram::StartWithSeries(int nWidth, int nHeight)
{
    return StartToMainWindow({SeriesArgument(nWidth, nHeight)}) && WaitUntilActive(FRAME_TITLE);
}

bool WindowProgram::Merge() const
{
    // Three working files for the photographs, and one of the result.
    return GiveMergeCommand() && Becomes([this] { return CacheFiles().size() == 4; }) &&
           WaitUntilGone(JOB_TITLE) && WaitUntilActive(FRAME_TITLE);
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

std::vector<std::string> WindowProgram::CacheFiles() const
{
    std::vector<std::string> vsNames;
    std::error_code noFolder; // before the first merge
    for (const auto& entry : fs::directory_iterator(File("hdrcache"), noFolder))
        vsNames.push_back(entry.path().filename());
    return vsNames;
}

std::vector<std::string> WindowProgram::LocksAndSockets() const
{
    std::vector<std::string> vsNames;
    for (const std::string& sFolder : {Home(), m_folder.File("runtime")})
        for (const auto& entry : fs::directory_iterator(sFolder))
            if (entry.is_socket() || entry.path().filename().string().starts_with("LumiStrandHDR-"))
                vsNames.push_back(entry.path().filename());
    return vsNames;
}

void WindowProgram::ExpectNothingLeft() const
{
    EXPECT_THAT(LocksAndSockets(), testing::IsEmpty());
    EXPECT_THAT(CacheFiles(), testing::IsEmpty());
}

} // namespace LS::Tests
