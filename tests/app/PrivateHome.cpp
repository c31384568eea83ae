// Sets the two variables by which a home is found.
#include "tests/app/PrivateHome.h"

#include <cstdlib>

#include <sys/stat.h>

namespace LS::Tests {

namespace {

std::string Variable(const char* szName)
{
    const char* szValue = std::getenv(szName);
    return szValue ? szValue : "";
}

} // namespace

PrivateHome::PrivateHome() : m_sOldHome(Variable("HOME")), m_sOldRuntime(Variable("XDG_RUNTIME_DIR"))
{
    mkdir(Home().c_str(), 0700);
    mkdir(Runtime().c_str(), 0700);
    setenv("HOME", Home().c_str(), 1);
    setenv("XDG_RUNTIME_DIR", Runtime().c_str(), 1);
}

PrivateHome::~PrivateHome()
{
    setenv("HOME", m_sOldHome.c_str(), 1);
    setenv("XDG_RUNTIME_DIR", m_sOldRuntime.c_str(), 1);
}

} // namespace LS::Tests
