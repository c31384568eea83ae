// A child process with its output caught in files.
#include "tests/cli/ProgramRun.h"

#include "tests/support/TempFolder.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace LS::Tests {

namespace {

void RedirectTo(const std::string& sPath, int nDescriptor)
{
    const int nFile = open(sPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (nFile < 0 || dup2(nFile, nDescriptor) < 0)
        _exit(126);
}

void Limit(__rlimit_resource nResource, long nValue)
{
    if (nValue < 0)
        return;
    const rlimit limit{static_cast<rlim_t>(nValue), static_cast<rlim_t>(nValue)};
    setrlimit(nResource, &limit);
}

[[noreturn]] void BecomeProgram(const std::vector<std::string>& vsArguments, const RunOptions& options,
                                const TempFolder& capture)
{
    RedirectTo(options.output.empty() ? capture.File("out") : options.output, STDOUT_FILENO);
    RedirectTo(capture.File("err"), STDERR_FILENO);
    if (!options.folder.empty() && chdir(options.folder.c_str()) != 0)
        _exit(126);
    for (const std::string& sVariable : options.environment)
        putenv(const_cast<char*>(sVariable.c_str()));
    std::signal(SIGXFSZ, SIG_IGN);
    Limit(RLIMIT_FSIZE, options.fileSizeLimit);
    Limit(RLIMIT_AS, options.memoryLimit);
    const char* const szProgram = options.program.empty() ? LS_CLI_PROGRAM : options.program.c_str();
    std::vector<char*> vszArguments{const_cast<char*>(szProgram)};
    for (const std::string& sArgument : vsArguments)
        vszArguments.push_back(const_cast<char*>(sArgument.c_str()));
    vszArguments.push_back(nullptr);
    execv(szProgram, vszArguments.data());
    _exit(126);
}

/// Ends a process that takes too long.
void WatchTheClock(pid_t nProcess, std::chrono::duration<double> limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    siginfo_t info{};
    while (waitid(P_PID, static_cast<id_t>(nProcess), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == 0) {
        if (std::chrono::steady_clock::now() > end)
            kill(nProcess, SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

int WaitFor(pid_t nProcess)
{
    int nStatus = 0;
    if (waitpid(nProcess, &nStatus, 0) != nProcess)
        throw std::runtime_error("the program got lost");
    return WIFSIGNALED(nStatus) ? 128 + WTERMSIG(nStatus) : WEXITSTATUS(nStatus);
}

} // namespace

ProgramRun RunProgram(const std::vector<std::string>& vsArguments, const RunOptions& options)
{
    const TempFolder capture;
    const pid_t nProcess = fork();
    if (nProcess < 0)
        throw std::runtime_error("fork");
    if (nProcess == 0)
        BecomeProgram(vsArguments, options, capture);
    if (options.interruptAfter >= 0) {
        std::this_thread::sleep_for(std::chrono::duration<double>(options.interruptAfter));
        kill(nProcess, SIGINT);
    }
    if (options.timeLimit >= 0)
        WatchTheClock(nProcess, std::chrono::duration<double>(options.timeLimit));
    const int nCode = WaitFor(nProcess);
    return {nCode, ReadText(capture.File("out")), ReadText(capture.File("err"))};
}

} // namespace LS::Tests
