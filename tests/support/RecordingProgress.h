// A progress target that remembers what it was told and can press Cancel.
#pragma once

#include "engine/ProgbarSetter.h"

#include <climits>
#include <vector>

namespace LS::Tests {

class RecordingProgress : public ProgressTarget {
public:
    /// Answers false from the first position of nCancelAt or more on.
    explicit RecordingProgress(int nCancelAt = INT_MAX) : m_nCancelAt(nCancelAt) {}

    bool Update(int value, const wxString&, bool*) override
    {
        m_vnPositions.push_back(value);
        return value < m_nCancelAt;
    }

    const std::vector<int>& Positions() const { return m_vnPositions; }

    /// A setter of 0 to 100 on this target. The process-wide last position is first moved away from what
    /// an earlier test left, so that each test sees its own reports only.
    ProgbarSetter Setter()
    {
        ProgbarSetter(nullptr, 0, -1, -1).SetPercent(0); // below every position on show: no dialog is called
        return {this, 0, 0, 100};
    }

private:
    int m_nCancelAt;
    std::vector<int> m_vnPositions;
};

} // namespace LS::Tests
