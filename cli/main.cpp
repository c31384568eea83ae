// The headless program: merges a series named on the command line, or those of a folder.
#include "Util/HeapPolicy.h"
#include "Util/OpenFiles.h"
#include "cli/Batch.h"
#include "cli/Cancel.h"
#include "cli/Console.h"
#include "cli/MergeJob.h"
#include "cli/Options.h"
#include "image/ImageDecoder.h"

#include <wx/init.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

ExitCode TellText(const ParsedCommandLine& parsed)
{
    if (parsed.code == ExitCode::Done)
        std::fputs(parsed.sText.c_str(), stdout);
    else
        Console(Verbosity::Quiet).Error("", parsed.sText + " --help lists the options.");
    return parsed.code;
}

ExitCode Merge(const Options& options)
{
    Console console(options.verbosity);
    // For images; needs no display. Never taken down: the work is published by then, and what the library
    // does at its end asks for memory and dies without it.
    static const wxInitializer& library = *new wxInitializer;
    if (!library.IsOk()) {
        console.Error("", "the image library can't be started");
        return ExitCode::Merge;
    }
    LS::Util::AllowManyOpenFiles();
    LS::Util::KeepFreedImages();
    RegisterImageHandlers();
    return MergeJob(options, console).Run();
}

/// Hands a job's exceptions, out of memory above all, to the user. Allocates nothing itself.
template <typename Job> ExitCode Told(Job job)
{
    try {
        return job();
    } catch (const std::exception& e) {
        std::fprintf(stderr, "lumistrand-hdr-cli: %s\n", e.what());
    } catch (...) {
        std::fputs("lumistrand-hdr-cli: an unknown fault\n", stderr);
    }
    return ExitCode::Merge;
}

ExitCode Run(const Options& options)
{
    CatchCancelSignals();
    return Told([&] { return options.sGroup.empty() ? Merge(options) : MergeFolder(options, Run); });
}

} // namespace

int main(int argc, char** argv)
{
    // A file that grows beyond a limit, and a pipe that nobody reads, are writes that fail: with a reason,
    // the exit code for it, and nothing left. The decoders' processes take the system's own handling back.
    for (const int nSignal : {SIGXFSZ, SIGPIPE})
        std::signal(nSignal, SIG_IGN);
    const ExitCode code = Told([&] {
        const ParsedCommandLine parsed = ParseCommandLine(std::vector<std::string>(argv + 1, argv + argc));
        return parsed.options ? Run(*parsed.options) : TellText(parsed);
    });
    Leave(code);
}
