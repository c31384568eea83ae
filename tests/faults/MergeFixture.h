// A merge within this process, with whatever may go wrong around it.
#pragma once

#include "Util/PixelBuffer.h"
#include "engine/ProgbarSetter.h"
#include "tests/support/SyntheticSeries.h"
#include "tests/support/TempFolder.h"

#include <array>
#include <functional>
#include <optional>
#include <string>

namespace LS::Tests {

/// Does something once, at the first position that is reported from some value on.
class ActingProgress : public ProgressTarget {
public:
    ActingProgress(int nAt, std::function<void()> act);

    bool Update(int value, const wxString& newmsg, bool* skip) override;

    /// A setter of 0 to 100 on this target.
    ProgbarSetter Setter() { return {this, -1, 0, 100}; }

private:
    int m_nAt;
    std::function<void()> m_act;
};

enum class Curves { Standard, Recovered };

/// Merges a series into the workspace. @return the preview's pixels; nothing if there is none
std::optional<Bytes> Merge(const SyntheticSeries& series, Curves curves, ProgressTarget* pTarget = nullptr);

/// The same without a preview. @return whether it is merged
bool MergeToFile(const SyntheticSeries& series);

/// Maps what is merged in full size, with a progress: then the way depends on the size. @return its pixels;
/// null if that failed
Util::PixelBuffer MapWithProgress(std::int32_t& nWidth, std::int32_t& nHeight,
                                  ProgressTarget* pTarget = nullptr);

/// All that comes of a merge; no preview and empty files if it failed.
struct Results {
    std::optional<Bytes> preview;
    std::array<Bytes, 3> files; ///< of the 32-bit formats
    Bytes mapped;

    bool operator==(const Results&) const = default;
};

/// Merges a series with the standard curve, saves and maps it. A failure after the merge fails the test.
Results ResultsOf(const SyntheticSeries& series);

/// A series of given exposures without a scene behind it: gradients whose phase differs between the images.
SyntheticSeries PlainSeries(const TempFolder& folder, std::int32_t nWidth, std::int32_t nHeight, int nImages);

/// The narrow path of the float cache file.
std::string FloatCachePath();

/// A number of this process's memory in KiB: "VmRSS:" what is resident, "VmHWM:" its peak.
long MemoryInUse(const char* szField);

} // namespace LS::Tests
