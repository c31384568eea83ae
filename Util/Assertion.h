// The program's own assertion: stays on in every build, since what it guards would harm the user's files.
#pragma once

namespace LS::Util {

/// Names the broken condition and its place in the log and on the error stream, then stops the program.
[[noreturn]] void AssertionFailed(const char* szCondition, const char* szFile, int nLine);

} // namespace LS::Util

/// States what a caller owes. It never checks files or what a user typed.
#define LS_ASSERT(condition)                                                                                 \
    ((condition) ? static_cast<void>(0) : ::LS::Util::AssertionFailed(#condition, __FILE__, __LINE__))
