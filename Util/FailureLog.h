// Where failures go that no message box and no result tells more about than "false".
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace LS::Util {

/// Receives one line per failure, without a line feed, in UTF-8.
using FailureSink = std::function<void(const std::string& sLine)>;

/// Replaces the sink of this process; an empty sink means the standard error stream, as at the start.
/// @return the sink that was in force
FailureSink SetFailureSink(FailureSink sink);

/// Writes "step: file: reason" to the sink; an empty file or reason is left out.
/// @param sFile  a path in the file system's bytes
void LogFailure(std::string_view sStep, std::string_view sFile, std::string_view sReason);

/// The system's words for an error number, by default the one that the last call left.
std::string SystemError(int nError);
std::string SystemError();

} // namespace LS::Util
