// All series of a folder, listed or merged.
#pragma once

#include "cli/ExitCode.h"
#include "cli/Options.h"

#include <functional>

/// Lists or merges the series of the folder that the options name. Single shots are noted and passed over.
///
/// Each merge runs in a process of its own, so that neither a failure nor a lack of memory ends the others,
/// and after all of them only the failed ones lack their outputs.
/// @param merge  merges one series, told by its options
/// @return Done; Input if there is no series; Partly if some failed; Cancelled. What isn't Done is told
ExitCode MergeFolder(const Options& options, const std::function<ExitCode(const Options&)>& merge);
