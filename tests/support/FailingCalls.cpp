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

bool Fails(SystemCall call)
{
    if (Error(call) == 0)
        return false;
    errno = Error(call);
    return true;
}

template <typename Function> Function* CLibrary(const char* szName)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, szName));
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

using LS::Tests::CLibrary;
using LS::Tests::Error;
using LS::Tests::Fails;
using LS::Tests::SystemCall;

extern "C" int fsync(int nFile)
{
    if (Error(SystemCall::Fsync) == LS::Tests::THROWS)
        throw std::runtime_error("a system call that throws");
    return Fails(SystemCall::Fsync) ? -1 : CLibrary<int(int)>("fsync")(nFile);
}

extern "C" int link(const char* szFrom, const char* szTo) noexcept
{
    if (Fails(SystemCall::Link))
        return -1;
    return CLibrary<int(const char*, const char*)>("link")(szFrom, szTo);
}

extern "C" int renameat2(int nFrom, const char* szFrom, int nTo, const char* szTo, unsigned nFlags) noexcept
{
    if (Fails(SystemCall::RenameAt2))
        return -1;
    using Function = int(int, const char*, int, const char*, unsigned);
    return CLibrary<Function>("renameat2")(nFrom, szFrom, nTo, szTo, nFlags);
}

extern "C" int faccessat(int nFolder, const char* szPath, int nMode, int nFlags) noexcept
{
    if (Fails(SystemCall::FaccessAt))
        return -1;
    return CLibrary<int(int, const char*, int, int)>("faccessat")(nFolder, szPath, nMode, nFlags);
}
