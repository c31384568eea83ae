// A merge within this process, with whatever may go wrong around it.
#pragma once

#include "engine/ProgbarSetter.h"
#include "tests/engine/SeriesFixture.h"

#include <array>
#include <functional>
#include <string>
#include <utility>

namespace LS::Tests {

/// Does something once, at the first position that is reported from some value on.
class ActingProgress : public ProgressTarget {
public:
    ActingProgress(int nAt, std::function<void()> act) : m_nAt(nAt), m_act(std::move(act)) {}

    bool Update(int value, const wxString&, bool*) override
    {
        if (value >= m_nAt)
            if (const auto act = std::exchange(m_act, {}))
                act();
        return true;
    }

    /// A setter of 0 to 100 on this target.
    ProgbarSetter Setter() { return {this, -1, 0, 100}; }

private:
    int m_nAt;
    std::function<void()> m_act;
};

/// All that comes of a merge; nothing if it failed.
struct Results {
    Bytes preview;
    std::array<Bytes, 3> files; ///< of the 32-bit formats
    Bytes mapped;

    bool operator==(const Results&) const = default;
};

enum class CurveKind { Standard, Recovered };

class MergeFixture : public SeriesFixture {
protected:
    /// The preview's pixels; none after a failure.
    Bytes Preview(CurveKind curves, ProgressTarget* pTarget = nullptr);

    /// Maps what is merged in full size, with a progress: then the way depends on the size.
    Bytes MapWithProgress();

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
