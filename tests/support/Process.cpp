// Child processes, as a shell starts them.
#include "tests/support/Process.h"

#include "tests/support/TempFolder.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace LS::Tests {

namespace {

void RedirectTo(const std::string& sPath, int nDescriptor)
{
    const int nFile = open(sPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0600);
    if (nFile < 0 || dup2(nFile, nDescriptor) < 0)
        _exit(126);
}

[[noreturn]] void BecomeProgram(const ProcessStart& start)
{
    RedirectTo(start.output, STDOUT_FILENO);
    RedirectTo(start.error, STDERR_FILENO);
    if (!start.folder.empty() && chdir(start.folder.c_str()) != 0)
        _exit(126);
    for (const std::string& sVariable : start.environment)
        putenv(const_cast<char*>(sVariable.c_str()));
    for (const int nSignal : {SIGXFSZ, SIGPIPE})
        std::signal(nSignal, SIG_DFL); // whatever this process ignores
    start.prepare();
    std::vector<char*> vszArguments{const_cast<char*>(start.program.c_str())};
    for (const std::string& sArgument : start.arguments)
        vszArguments.push_back(const_cast<char*>(sArgument.c_str()));
    vszArguments.push_back(nullptr);
    execv(start.program.c_str(), vszArguments.data());
    _exit(126);
}

} // namespace

Process::Process(const ProcessStart& start) : m_nId(fork()), m_sOutput(start.output)
{
    if (m_nId < 0)
        throw std::runtime_error("fork");
    if (m_nId == 0)
        BecomeProgram(start);
}

Process& Process::operator=(Process&& other) noexcept
{
    std::swap(m_nId, other.m_nId);
    std::swap(m_sOutput, other.m_sOutput);
    return *this;
}

int Process::WaitForExit()
{
    if (!Becomes([this] { return !IsRunning(); }))
        return -1;
    int nStatus = 0;
    waitpid(std::exchange(m_nId, -1), &nStatus, 0);
    return WIFSIGNALED(nStatus) ? 128 + WTERMSIG(nStatus) : WEXITSTATUS(nStatus);
}

bool Process::IsRunning() const
{
    siginfo_t info{};
    return m_nId > 0 && waitid(P_PID, static_cast<id_t>(m_nId), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == 0;
}

void Process::Signal(int nSignal) const
{
    if (m_nId > 0)
        kill(m_nId, nSignal);
}

void Process::Kill()
{
    Signal(SIGKILL); // leaves the status of a process that has ended as it is
    if (m_nId > 0)
        waitpid(std::exchange(m_nId, -1), nullptr, 0);
}

std::string Process::Output() const
{
    return ReadText(m_sOutput);
}

} // namespace LS::Tests
