// Tells files from what only has a path like one.
#pragma once

#include <string>

/// Whether a path leads to a regular file, links followed. Nothing is opened, so nothing can wait for a pipe
/// or wake a device.
///
/// @param sPath    in the file system's bytes
/// @param sReason  receives why not, for a log
bool IsRegularFile(const std::string& sPath, std::string& sReason);
