// Which photographs belong together, by what their files tell.
#pragma once

#include "image/SeriesChecks.h"

#include <chrono>
#include <string>
#include <vector>

/// One photograph of a folder that can be merged.
struct Shot {
    std::string sPath; ///< in the file system's bytes
    ExposureSetting exposure{};
    std::chrono::microseconds taken{}; ///< since 1970, on the clock that sSource tells
    std::string sSource;               ///< camera, size, kind of file and clock: alike within a series
};

struct ShotSeries {
    std::string
        sName; ///< of its outputs: the first photograph's without the extension, unless two would share it
    std::vector<Shot> vShots; ///< in the order in which they were taken
};

/// Groups shots into series.
///
/// Shots of one source are walked in the order of their times, equal times in the order of file names. A new
/// series starts with a shot whose exposure the running series has already, since a merge wants each only
/// once, and after a pause.
/// @param dGap  the longest pause within a series, in seconds, from shot to shot. What the longer of the two
///              exposures took is no pause; cameras differ in whether they note its start or its end
/// @return the series, single shots among them, in the order of the file names of their first photographs
std::vector<ShotSeries> GroupShots(std::vector<Shot> vShots, double dGap);
