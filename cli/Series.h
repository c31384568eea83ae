// The photographs of a command line: what is known of each, and what makes them one series.
#pragma once

#include "cli/Console.h"
#include "cli/ExitCode.h"
#include "cli/Options.h"

#include <cstdint>
#include <string>
#include <vector>

struct SeriesImage {
    std::string sPath;       ///< in the file system's bytes
    float fShutter = 0;      ///< seconds
    float fStop = 0;         ///< f-number
    std::int32_t nWidth = 0; ///< pixels; 0 until the photograph is decoded
    std::int32_t nHeight = 0;
    std::string sCacheName; ///< its working file: NAME.EXT.tmp, with a number where two would be equal
};

using Series = std::vector<SeriesImage>;

/// Makes the series: exposures from the options or from Exif data, in the order of the file names.
/// Tells all that is wrong, image by image. @return Done or Input
ExitCode MakeSeries(const Options& options, Console& console, Series& series);

/// Tells if the latest image of the series that is decoded has another size than the first. @return Done or
/// Input
ExitCode CheckSize(const Series& series, std::size_t iLatest, Console& console);

/// What an exposure lacks, and the options that help; nothing if it can be merged.
std::string ExposureFault(float fShutter, float fStop);

/// A shutter time as photographers write it: "1/60 s", "2 s".
std::string ShutterText(float fShutter);
