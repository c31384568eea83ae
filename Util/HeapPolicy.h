// How the C library hands large blocks back.
#pragma once

namespace LS::Util {

/// For a program that decodes one photograph after the other: a freed block of the size of an image stays in
/// the process, so that the next image finds its pages there instead of having the system clear new ones.
/// The process keeps the memory of its largest image to its end.
void KeepFreedImages();

} // namespace LS::Util
