// The two forms of the fault suite: the short one belongs to every run of the tests.
#pragma once

namespace LS::Tests {

/// Whether the long form is asked for, by LS_FAULTS=long in the environment.
bool IsLongForm();

/// One of two numbers, by the form.
int InForm(int nShort, int nLong);

/// Says on the standard output why something could not be tried here, so that nobody takes it for tried.
void TellNotTried(const char* szReason);

} // namespace LS::Tests
