// A child process with its output caught in files.
#include "tests/cli/ProgramRun.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <iterator>
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

/// As a shell sets a limit: for good.
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
    Limit(RLIMIT_FSIZE, options.fileSizeLimit);
    Limit(RLIMIT_AS, options.memoryLimit);
    for (const int nSignal : {SIGXFSZ, SIGPIPE})
        std::signal(nSignal, SIG_DFL); // as a shell starts it, whatever this process ignores
    const char* const szProgram = options.program.empty() ? LS_CLI_PROGRAM : options.program.c_str();
    std::vector<char*> vszArguments{const_cast<char*>(szProgram)};
    for (const std::string& sArgument : vsArguments)
        vszArguments.push_back(const_cast<char*>(sArgument.c_str()));
    vszArguments.push_back(nullptr);
    execv(szProgram, vszArguments.data());
    _exit(126);
}

/// Sends the signal at its moment, and ends a process that takes too long.
void Watch(pid_t nProcess, const RunOptions& options)
{
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    bool bWaits = options.when != nullptr;
    siginfo_t info{};
    while (waitid(P_PID, static_cast<id_t>(nProcess), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == 0) {
        if (bWaits && options.when(nProcess)) {
            bWaits = false;
            kill(nProcess, options.signal);
        }
        if (options.timeLimit >= 0 && Clock::now() - start > std::chrono::duration<double>(options.timeLimit))
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
    if (options.when || options.timeLimit >= 0)
        Watch(nProcess, options);
    const int nCode = WaitFor(nProcess);
    return {nCode, ReadText(capture.File("out")), ReadText(capture.File("err"))};
}

std::vector<pid_t> ChildrenOf(pid_t nProcess)
{
    const std::string sProcess = std::to_string(nProcess);
    std::ifstream file("/proc/" + sProcess + "/task/" + sProcess + "/children");
    return {std::istream_iterator<pid_t>(file), {}};
}

ProgramRun ProgramFixture::Run(const Arguments& arguments, RunOptions options) const
{
    if (options.folder.empty())
        options.folder = m_outputs.Path();
    options.environment.insert(options.environment.begin(), "TMPDIR=" + m_temporary.Path());
    return RunProgram(arguments, options);
}

void ProgramFixture::ExpectOnly(const Names& outputs) const
{
    EXPECT_EQ(outputs, m_outputs.Names());
    EXPECT_EQ(Names{}, m_temporary.Names());
}

void ExpectHas(const std::string& sPiece, const std::string& sText)
{
    EXPECT_NE(std::string::npos, sText.find(sPiece)) << sPiece << "\nis missing in\n" << sText;
}

void ExpectFailure(int nCode, const std::string& sPiece, const ProgramRun& run)
{
    EXPECT_EQ(nCode, run.code);
    EXPECT_EQ("", run.out);
    EXPECT_EQ(1, std::count(run.err.begin(), run.err.end(), '\n')) << run.err;
    ExpectHas(sPiece, run.err);
}

} // namespace LS::Tests
