// A program's own function goes before the C library's of the same name.
#include "tests/support/FailingCalls.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <stdexcept>

#include <dlfcn.h>

namespace LS::Tests {

namespace {

int& Error(SystemCall call)
{
    static std::array<int, 4> errors{};
    return errors[static_cast<std::size_t>(call)];
}

/// Fails, or calls the C library's function.
template <typename... Arguments> int Call(SystemCall call, const char* szName, Arguments... arguments)
{
    if (Error(call) == THROWS)
        throw std::runtime_error("a system call that throws");
    if (Error(call) == 0)
        return reinterpret_cast<int (*)(Arguments...)>(dlsym(RTLD_NEXT, szName))(arguments...);
    errno = Error(call);
    return -1;
}

} // namespace

FailingCall::FailingCall(SystemCall call, int nError) : m_call(call)
{
    Error(call) = nError;
}

FailingCall::~FailingCall()
{
    Error(m_call) = 0;
}

} // namespace LS::Tests

using LS::Tests::Call;
using LS::Tests::SystemCall;

extern "C" int fsync(int nFile)
{
    return Call(SystemCall::Fsync, "fsync", nFile);
}

extern "C" int link(const char* szFrom, const char* szTo) noexcept
{
    return Call(SystemCall::Link, "link", szFrom, szTo);
}

extern "C" int renameat2(int nFrom, const char* szFrom, int nTo, const char* szTo, unsigned nFlags) noexcept
{
    return Call(SystemCall::RenameAt2, "renameat2", nFrom, szFrom, nTo, szTo, nFlags);
}

extern "C" int faccessat(int nFolder, const char* szPath, int nMode, int nFlags) noexcept
{
    return Call(SystemCall::FaccessAt, "faccessat", nFolder, szPath, nMode, nFlags);
}
