// How many files the process may have open at once.
#pragma once

namespace LS::Util {

/// Raises the soft limit to the hard one, or to the few thousand that the longest series need: a merge reads
/// all its photographs at once, and many systems begin with 1024 or 256. To be called at the start.
void AllowManyOpenFiles();

} // namespace LS::Util
