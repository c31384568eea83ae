// A failure sink that remembers.
#include "tests/support/FailureRecorder.h"

#include <utility>

namespace LS::Tests {

FailureRecorder::FailureRecorder()
    : m_previous(Util::SetFailureSink([this](const std::string& sLine) { m_vsLines.push_back(sLine); }))
{
}

FailureRecorder::~FailureRecorder()
{
    Util::SetFailureSink(std::move(m_previous));
}

} // namespace LS::Tests
