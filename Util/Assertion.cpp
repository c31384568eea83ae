// Stops the program at a broken precondition.
#include "Util/Assertion.h"

#include "Util/FailureLog.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace LS::Util {

void AssertionFailed(const char* szCondition, const char* szFile, int nLine)
{
    const std::string sPlace = std::string(szFile) + ":" + std::to_string(nLine);
    std::fprintf(stderr, "%s: assertion failed: %s\n", sPlace.c_str(), szCondition);
    LogFailure("assertion failed", sPlace, szCondition);
    std::abort();
}

} // namespace LS::Util
