// A merge within this process, with whatever may go wrong around it.
#pragma once

#include "tests/engine/SeriesFixture.h"
#include "tests/support/RecordingProgress.h"

#include <array>
#include <string>

namespace LS::Tests {

/// All that comes of a merge; nothing if it failed.
struct Results {
    Bytes preview;
    std::array<Bytes, 3> files; ///< of the 32-bit formats
    Bytes mapped;

    bool operator==(const Results&) const = default;
};

class MergeFixture : public SeriesFixture {
protected:
    /// Merges the series with the standard curve, saves and maps it. A failure after the merge fails the
    /// test.
    Results ResultsOfSeries();

    /// Takes a series of given exposures without a scene behind it: gradients whose phase differs between the
    /// images.
    void TakeGradients(std::int32_t nWidth, std::int32_t nHeight, int nImages);

    /// The narrow path of the float cache file.
    static std::string FloatCachePath() { return Util::NarrowPath(Workspace().sHDRFile); }
};

} // namespace LS::Tests
