// The two forms of the fault suite: the short one belongs to every run of the tests.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace LS::Tests {

/// Whether the long form is asked for, by LS_FAULTS=long in the environment.
inline bool IsLongForm()
{
    const char* const szForm = std::getenv("LS_FAULTS");
    return szForm && std::string_view(szForm) == "long";
}

/// One of two numbers, by the form.
inline int InForm(int nShort, int nLong)
{
    return IsLongForm() ? nLong : nShort;
}

/// Prints why something could not be tried here, so that nobody takes it for tried.
inline void ReportNotTried(const char* szReason)
{
    std::printf("NOT TRIED: %s\n", szReason);
}

} // namespace LS::Tests
