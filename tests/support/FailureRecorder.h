// Collects the lines of the failure log.
#pragma once

#include "Util/FailureLog.h"

#include <string>
#include <vector>

namespace LS::Tests {

/// Takes the place of the log as long as it lives.
class FailureRecorder {
public:
    FailureRecorder();
    FailureRecorder(const FailureRecorder&) = delete;
    FailureRecorder& operator=(const FailureRecorder&) = delete;
    ~FailureRecorder();

    const std::vector<std::string>& Lines() const { return m_vsLines; }

private:
    std::vector<std::string> m_vsLines;
    Util::FailureSink m_previous;
};

} // namespace LS::Tests
