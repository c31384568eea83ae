// An application around tests and measurements that need windows.
#pragma once

#include <functional>

namespace LS::Tests {

/// Runs an application whose event loop is active, and whose only work is this function; log messages go to
/// the error stream, since boxes would block for ever. @return what the function gives
int RunWithWindows(int argc, char** argv, std::function<int()> work);

} // namespace LS::Tests
