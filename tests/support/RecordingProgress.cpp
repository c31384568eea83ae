// Records positions; cancels on request.
#include "tests/support/RecordingProgress.h"

#include <wx/string.h>

#include <climits>

namespace LS::Tests {

RecordingProgress::RecordingProgress() : RecordingProgress(INT_MAX) {}

RecordingProgress::RecordingProgress(int nCancelAt) : m_nCancelAt(nCancelAt) {}

bool RecordingProgress::Update(int value, const wxString&, bool*)
{
    m_vnPositions.push_back(value);
    return value < m_nCancelAt;
}

ProgbarSetter RecordingProgress::Setter()
{
    // Below every position on show, so the dialog isn't called.
    ProgbarSetter(nullptr, 0, -1, -1).SetPercent(0);
    return {this, 0, 0, 100};
}

} // namespace LS::Tests
