// What a merge takes from the source list.
#pragma once

#include "frame/SourceRecords.h"
#include "image/SeriesChecks.h"

#include <cstdint>
#include <string>
#include <vector>

class ProgbarSetter;

/// The arguments of CreateHDRImage that come from the ticked records, in their order.
struct MergeInput {
    std::vector<std::wstring> vsLDRFiles; ///< source cache files
    std::vector<float> vfShutters, vfStops, vfGains, vfNDs;
};

MergeInput CollectMergeInput(const SourceRecords& records);

std::vector<ExposureSetting> TickedExposures(const SourceRecords& records);
std::vector<PixelSize> TickedSizes(const SourceRecords& records);

/// Writes the source cache file of each ticked record that has none yet. A photograph that doesn't decode is
/// left out, and so is nothing said of a failed write: the merge then fails for want of the file.
/// @param progress  of all records, ticked or not; an answer to stop isn't looked at
void ConvertSources(const SourceRecords& records, ProgbarSetter& progress);
