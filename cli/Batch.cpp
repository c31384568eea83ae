// All series of a folder, listed or merged.
#include "cli/Batch.h"

#include "Util/FailureLog.h"
#include "cli/Cancel.h"
#include "cli/Console.h"
#include "cli/FolderShots.h"
#include "cli/Grouping.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::vector<std::string> Paths(const ShotSeries& series)
{
    std::vector<std::string> vsPaths;
    for (const Shot& shot : series.vShots)
        vsPaths.push_back(shot.sPath);
    return vsPaths;
}

void DropSingleShots(std::vector<ShotSeries>& vSeries, Console& console)
{
    std::erase_if(vSeries, [&console](const ShotSeries& series) {
        const bool bIsSingle = series.vShots.size() == 1;
        if (bIsSingle)
            console.Note(series.vShots[0].sPath, "passed over: a single shot");
        return bIsSingle;
    });
}

ExitCode List(const std::vector<ShotSeries>& vSeries, Console& console)
{
    ExitCode code = ExitCode::Done;
    for (const ShotSeries& series : vSeries) {
        if (const auto sLine = SeriesLine(series.sName, Paths(series))) {
            console.Print(*sLine);
            continue;
        }
        console.Error(series.vShots[0].sPath, "a path with a tab or a line feed can't be listed");
        code = ExitCode::Partly;
    }
    return code;
}

ExitCode WaitFor(pid_t nProcess, const std::string& sSeries, Console& console)
{
    int nStatus = 0;
    while (waitpid(nProcess, &nStatus, 0) < 0 && errno == EINTR) {
    }
    PassCancelTo(0);
    if (WIFEXITED(nStatus))
        return static_cast<ExitCode>(WEXITSTATUS(nStatus));
    console.Error(sSeries, std::string("the merge was ended: ") + strsignal(WTERMSIG(nStatus)));
    return ExitCode::Merge;
}

ExitCode MergeInProcess(const Options& options, const std::function<ExitCode(const Options&)>& merge,
                        Console& console)
{
    std::fflush(stdout); // else both processes would print what waits there
    const pid_t nProcess = fork();
    if (nProcess < 0)
        return console.Fail(ExitCode::Merge, options.vsImages[0], LS::Util::SystemError());
    if (nProcess == 0)
        Leave(merge(options));
    PassCancelTo(nProcess);
    if (CancelRequested()) // before there was somebody to pass it to
        kill(nProcess, SIGTERM);
    return WaitFor(nProcess, options.vsImages[0], console);
}

} // namespace

ExitCode MergeFolder(const Options& options, const std::function<ExitCode(const Options&)>& merge)
{
    Console console(options.verbosity);
    FolderShots found;
    if (const ExitCode code = ReadFolder(options, console, found); code != ExitCode::Done)
        return code;
    std::vector<ShotSeries> vSeries = GroupShots(std::move(found.vShots), options.dGap);
    DropSingleShots(vSeries, console);
    if (vSeries.empty())
        return console.Fail(ExitCode::Input, options.sGroup, "holds no series of photographs");
    if (options.bList)
        return List(vSeries, console);

    std::size_t nMerged = 0, nFailed = 0;
    for (const ShotSeries& series : vSeries) {
        Options one = OptionsForSeries(options, series.sName, Paths(series));
        one.vsKept = found.vsFiles;
        const ExitCode code = MergeInProcess(one, merge, console);
        if (code == ExitCode::Cancelled || CancelRequested()) {
            console.Error(options.sGroup,
                          Formatted("stopped after %zu of %zu series", nMerged + nFailed, vSeries.size()));
            return ExitCode::Cancelled;
        }
        ++(code == ExitCode::Done ? nMerged : nFailed);
    }
    if (nFailed == 0)
        return ExitCode::Done;
    console.Error(options.sGroup, Formatted("%zu of %zu series failed", nFailed, vSeries.size()));
    return ExitCode::Partly;
}
