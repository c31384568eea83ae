// System calls that fail on command, as no limit or folder makes them fail, least of all for root.
#pragma once

namespace LS::Tests {

enum class SystemCall { Fsync, Link, RenameAt2, FaccessAt };

/// Instead of an error number: the call throws a std::runtime_error. Only fsync may do that.
constexpr int THROWS = -1;

/// Lets every such call of this process fail with an error number as long as it lives.
class FailingCall {
public:
    FailingCall(SystemCall call, int nError);
    FailingCall(const FailingCall&) = delete;
    FailingCall& operator=(const FailingCall&) = delete;
    ~FailingCall();

private:
    SystemCall m_call;
};

} // namespace LS::Tests
