// Collects the lines of the failure log.
#pragma once

#include "Util/FailureLog.h"

#include <string>
#include <utility>
#include <vector>

namespace LS::Tests {

/// Takes the place of the log as long as it lives.
class FailureRecorder {
public:
    FailureRecorder()
        : m_previous(Util::SetFailureSink([this](const std::string& sLine) { m_vsLines.push_back(sLine); }))
    {
    }
    FailureRecorder(const FailureRecorder&) = delete;
    FailureRecorder& operator=(const FailureRecorder&) = delete;
    ~FailureRecorder() { Util::SetFailureSink(std::move(m_previous)); }

    const std::vector<std::string>& Lines() const { return m_vsLines; }

private:
    std::vector<std::string> m_vsLines;
    Util::FailureSink m_previous;
};

} // namespace LS::Tests
