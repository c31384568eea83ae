// The photographs of a folder.
#pragma once

#include "cli/Console.h"
#include "cli/ExitCode.h"
#include "cli/Grouping.h"
#include "cli/Options.h"

#include <string>
#include <vector>

struct FolderShots {
    std::vector<Shot> vShots;
    std::vector<std::string> vsFiles; ///< all that are photographs by their names
};

/// Reads what the photographs of a folder tell: the files .jpg, .jpeg, .tif and .tiff that are not hidden, in
/// no sub-folder. Exposures come from the options or from Exif data; the time, where Exif data tells none, is
/// the file's. Photographs that can't be merged are noted and left out.
/// @return Done; Input, told, if the folder can't be read; Cancelled
ExitCode ReadFolder(const Options& options, Console& console, FolderShots& found);
