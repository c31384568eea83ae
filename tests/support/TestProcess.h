// What every test process begins with.
#pragma once

#include <cstddef>

namespace LS::Tests {

/// A failed assertion of the library ends the process with its place; the cache folder is a private one.
void PrepareTestProcess();

/// What the leak checker shall pass over, in the form of its files: a program of ours that a test starts
/// needs to be told by LSAN_OPTIONS.
const char* LeaksOfLibraries();

/// How many files the process has open.
std::size_t OpenDescriptors();

} // namespace LS::Tests
