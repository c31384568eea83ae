// Decodes in a child process, so that a decoder's crash, hang or greed stays there.
#pragma once

#include "image/ImageDecoder.h"

#include <chrono>
#include <functional>

/// Runs a decoder in a child process and brings its answer back: the pixels with alpha plane and mask colour,
/// or the reason why there are none.
///
/// The child has limits on memory and time, can write no files and sees neither the error stream nor any
/// descriptor but nFile. It runs none of this program's exit or signal handlers. When this returns it is
/// gone. A crash, an end without an answer and an answer that makes no sense are undecodable.
/// @param decode     runs in the child; may throw
/// @param nFile      the open file that decode reads; stays the caller's
/// @param timeLimit  after this the child is ended
DecodedImage DecodeInChild(const std::function<DecodedImage()>& decode, int nFile,
                           std::chrono::milliseconds timeLimit);
