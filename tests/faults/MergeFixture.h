// A merge within this process, with whatever may go wrong around it.
#pragma once

#include "engine/ProgbarSetter.h"
#include "tests/support/SyntheticSeries.h"
#include "tests/support/TempFolder.h"

#include <functional>
#include <optional>
#include <string>

namespace LS::Tests {

/// Does something once, at the first position that is reported from some value on.
class ActingProgress : public ProgressTarget {
public:
    ActingProgress(int nAt, std::function<void()> act);

    bool Update(int value, const wxString& newmsg, bool* skip) override;

    bool HasActed() const { return !m_act; }

    /// A setter of 0 to 100 on this target.
    ProgbarSetter Setter();

private:
    int m_nAt;
    std::function<void()> m_act;
};

enum class Curves { Standard, Recovered };

/// Merges a series into the workspace. @return the preview's pixels; nothing if there is none
std::optional<Bytes> Merge(const SyntheticSeries& series, Curves curves, ProgressTarget* pTarget = nullptr);

/// A series of given exposures without a scene behind it: gradients whose phase differs between the images.
SyntheticSeries PlainSeries(const TempFolder& folder, std::int32_t nWidth, std::int32_t nHeight, int nImages);

/// The narrow path of the float cache file.
std::string FloatCachePath();

} // namespace LS::Tests
