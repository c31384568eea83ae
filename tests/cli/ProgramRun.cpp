// Catches the output in files.
#include "tests/cli/ProgramRun.h"

#include "tests/support/Process.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fstream>
#include <iterator>
#include <sys/resource.h>
#include <thread>

namespace LS::Tests {

namespace {

/// As a shell sets a limit: for good.
void Limit(__rlimit_resource nResource, long nValue)
{
    if (nValue < 0)
        return;
    const rlimit limit{static_cast<rlim_t>(nValue), static_cast<rlim_t>(nValue)};
    setrlimit(nResource, &limit);
}

/// Sends the signal at its moment, and ends a process that takes too long.
void Watch(const Process& process, const RunOptions& options)
{
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    bool bWaits = options.when != nullptr;
    while (process.IsRunning()) {
        if (bWaits && options.when(process.Id())) {
            bWaits = false;
            process.Signal(options.signal);
        }
        if (options.timeLimit >= 0 && Clock::now() - start > std::chrono::duration<double>(options.timeLimit))
            process.Signal(SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

} // namespace

ProgramRun RunProgram(const std::vector<std::string>& vsArguments, const RunOptions& options)
{
    const TempFolder capture;
    const std::string sOutput = options.output.empty() ? capture.File("out") : options.output;
    Process process({options.program.empty() ? LS_CLI_PROGRAM : options.program, vsArguments,
                     options.environment, sOutput, capture.File("err"), options.folder, [&options] {
                         Limit(RLIMIT_FSIZE, options.fileSizeLimit);
                         Limit(RLIMIT_AS, options.memoryLimit);
                     }});
    Watch(process, options);
    const int nCode = process.WaitForExit();
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
