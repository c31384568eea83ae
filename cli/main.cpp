// The headless program: merges a series named on the command line, or those of a folder.
#include "Util/HeapPolicy.h"
#include "cli/Batch.h"
#include "cli/Cancel.h"
#include "cli/Console.h"
#include "cli/MergeJob.h"
#include "cli/Options.h"
#include "image/ImageDecoder.h"

#include <wx/init.h>

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
    const wxInitializer library; // for images; needs no display
    if (!library.IsOk()) {
        console.Error("", "the image library can't be started");
        return ExitCode::Merge;
    }
    LS::Util::KeepFreedImages();
    RegisterImageHandlers();
    return MergeJob(options, console).Run();
}

ExitCode Run(const Options& options)
{
    CatchCancelSignals();
    try {
        return options.sGroup.empty() ? Merge(options) : MergeFolder(options, Run);
    } catch (const std::exception& e) { // out of memory, above all
        Console(options.verbosity).Error("", e.what());
        return ExitCode::Merge;
    }
}

} // namespace

int main(int argc, char** argv)
{
    const ParsedCommandLine parsed = ParseCommandLine(std::vector<std::string>(argv + 1, argv + argc));
    return static_cast<int>(parsed.options ? Run(*parsed.options) : TellText(parsed));
}
