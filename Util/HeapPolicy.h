// How the C library hands large blocks out and takes them back.
#pragma once

#include <cstddef>

namespace LS::Util {

/// For a program that decodes photographs: a freed block of the size of an image stays in the process, so
/// that the next image finds its pages there instead of having the system clear new ones. The process keeps
/// the memory of its freed images to its end.
void KeepFreedImages();

/// PreferHugePages for the next block of this size, which a library is about to allocate. Of no use unless
/// KeepFreedImages was called.
void ExpectLargeBlock(std::size_t nBytes);

} // namespace LS::Util
