// Unix sockets between processes of one user, with an end to every wait.
#pragma once

#include "Util/FileDescriptor.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

using Deadline = std::chrono::steady_clock::time_point;

/// Listens at a path, closed to other users; its folder must be private. A socket that a dead process left
/// there is removed, anything else is not.
/// @return not open, with the reason in the log, if the path is taken or can't be used
LS::Util::FileDescriptor ListenLocal(const std::string& sPath);

/// The next connection that waits, set not to block. @return not open if there is none, or it is another
/// user's
LS::Util::FileDescriptor AcceptLocal(int nListener);

/// Connects to a listener of this user, whether or not it is able to accept just now.
/// @return not open if nobody listens, it is another user's, or the deadline passed. Nothing is logged
LS::Util::FileDescriptor ConnectLocal(const std::string& sPath, Deadline deadline);

/// Whether a live process listens there.
bool IsListening(const std::string& sPath);

/// Sends everything. @return false if the other side is gone or the deadline passed
bool SendAll(int nSocket, std::string_view sBytes, Deadline deadline);

/// Waits for one byte. @return none if the other side is gone or the deadline passed
std::optional<unsigned char> ReceiveByte(int nSocket, Deadline deadline);
