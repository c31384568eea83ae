// A progress target that remembers what it was told and can press Cancel.
#pragma once

#include "engine/ProgbarSetter.h"

#include <vector>

namespace LS::Tests {

class RecordingProgress : public ProgressTarget {
public:
    RecordingProgress();

    /// Answers false from the first position of nPosition or more on.
    explicit RecordingProgress(int nCancelAt);

    bool Update(int value, const wxString& newmsg, bool* skip) override;

    const std::vector<int>& Positions() const { return m_vnPositions; }

    /// A setter of 0 to 100 on this target. The process-wide last position is first moved away from what
    /// an earlier test left, so that each test sees its own reports only.
    ProgbarSetter Setter();

private:
    int m_nCancelAt;
    std::vector<int> m_vnPositions;
};

} // namespace LS::Tests
