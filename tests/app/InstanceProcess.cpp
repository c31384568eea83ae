// Starts, hears and ends processes of the test program.
#include "tests/app/InstanceProcess.h"

#include <csignal>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace LS::Tests {

namespace {

constexpr int SILENCE_MS = 20'000; // more than any wait of the program, on a busy machine

} // namespace

InstanceProcess::InstanceProcess(const std::vector<std::string>& vsArguments)
{
    int pipe[2];
    if (pipe2(pipe, O_CLOEXEC) != 0)
        throw std::runtime_error("pipe");
    std::vector<char*> vszArguments{const_cast<char*>(LS_INSTANCE_PROGRAM)};
    for (const std::string& sArgument : vsArguments)
        vszArguments.push_back(const_cast<char*>(sArgument.c_str()));
    vszArguments.push_back(nullptr);

    m_nProcess = fork();
    if (m_nProcess < 0)
        throw std::runtime_error("fork");
    if (m_nProcess == 0) {
        dup2(pipe[1], STDOUT_FILENO);
        execv(LS_INSTANCE_PROGRAM, vszArguments.data());
        _exit(126);
    }
    m_output = Util::FileDescriptor(pipe[0]);
    close(pipe[1]);
}

InstanceProcess::InstanceProcess(InstanceProcess&& other) noexcept
    : m_nProcess(std::exchange(other.m_nProcess, 0)), m_output(std::move(other.m_output)),
      m_sPending(std::move(other.m_sPending))
{
}

InstanceProcess::~InstanceProcess()
{
    Kill();
}

std::string InstanceProcess::Line()
{
    for (;;) {
        if (const auto nEnd = m_sPending.find('\n'); nEnd != std::string::npos) {
            std::string sLine = m_sPending.substr(0, nEnd);
            m_sPending.erase(0, nEnd + 1);
            return sLine;
        }
        pollfd poller{m_output.Get(), POLLIN, 0};
        char buffer[4096];
        if (poll(&poller, 1, SILENCE_MS) != 1)
            return {};
        const ssize_t nRead = read(m_output.Get(), buffer, sizeof buffer);
        if (nRead <= 0)
            return {};
        m_sPending.append(buffer, static_cast<std::size_t>(nRead));
    }
}

std::string InstanceProcess::Rest()
{
    std::string sRest;
    for (std::string sLine = Line(); !sLine.empty(); sLine = Line())
        sRest += (sRest.empty() ? "" : "/") + sLine;
    return sRest;
}

void InstanceProcess::Kill()
{
    if (m_nProcess <= 0)
        return;
    kill(m_nProcess, SIGKILL);
    waitpid(std::exchange(m_nProcess, 0), nullptr, 0);
}

} // namespace LS::Tests
