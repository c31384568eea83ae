// The calls of the system behind Unix sockets.
#include "app/LocalSocket.h"

#include "Util/FailureLog.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using LS::Util::FileDescriptor;
using LS::Util::LogFailure;
using LS::Util::SystemError;
using std::chrono::steady_clock;

namespace {

constexpr const char* STEP = "listening for later starts";

/// Between two tries to connect to a listener whose queue is full.
constexpr std::chrono::milliseconds RETRY{10};

struct LocalAddress {
    explicit LocalAddress(const std::string& sPath)
    {
        bFits = !sPath.empty() && sPath.size() < sizeof address.sun_path;
        if (bFits)
            std::memcpy(address.sun_path, sPath.c_str(), sPath.size() + 1);
    }
    const sockaddr* Get() const { return reinterpret_cast<const sockaddr*>(&address); }

    sockaddr_un address{AF_UNIX, {}};
    bool bFits;
};

FileDescriptor NewSocket()
{
    return FileDescriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

bool IsSameUser(int nSocket)
{
    ucred peer{};
    socklen_t nSize = sizeof peer;
    return getsockopt(nSocket, SOL_SOCKET, SO_PEERCRED, &peer, &nSize) == 0 && peer.uid == geteuid();
}

/// Whether it was ours and of no use.
bool RemoveDeadSocket(const std::string& sPath)
{
    struct stat info;
    return lstat(sPath.c_str(), &info) == 0 && S_ISSOCK(info.st_mode) && info.st_uid == geteuid() &&
           !IsListening(sPath) && unlink(sPath.c_str()) == 0;
}

/// Waits until a socket is ready or the deadline has passed; spurious ends do no harm.
void WaitFor(int nSocket, short nEvents, Deadline deadline)
{
    using std::chrono::milliseconds;
    const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now()).count();
    pollfd poller{nSocket, nEvents, 0};
    poll(&poller, 1, static_cast<int>(std::clamp<long long>(left, 0, 60'000)));
}

bool MayTryAgain(int nError)
{
    return nError == EAGAIN || nError == EINTR;
}

} // namespace

FileDescriptor ListenLocal(const std::string& sPath)
{
    const LocalAddress address(sPath);
    FileDescriptor listener = NewSocket();
    if (!address.bFits || !listener.IsOpen()) {
        LogFailure(STEP, sPath, address.bFits ? SystemError() : "the path is no socket's");
        return FileDescriptor();
    }
    // Linux gives the file the mode of the descriptor, so there is no moment at which others can connect.
    fchmod(listener.Get(), 0600);
    const auto TryBind = [&] {
        return bind(listener.Get(), address.Get(), sizeof address.address) == 0 ? 0 : errno;
    };
    int nError = TryBind();
    if (nError == EADDRINUSE && RemoveDeadSocket(sPath))
        nError = TryBind();
    if (nError == 0 && listen(listener.Get(), SOMAXCONN) != 0)
        nError = errno;
    if (nError == 0)
        return listener;
    LogFailure(STEP, sPath, SystemError(nError));
    return FileDescriptor();
}

FileDescriptor AcceptLocal(int nListener)
{
    FileDescriptor socket(accept4(nListener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (socket.IsOpen() && !IsSameUser(socket.Get()))
        socket.Close();
    return socket;
}

FileDescriptor ConnectLocal(const std::string& sPath, Deadline deadline)
{
    const LocalAddress address(sPath);
    FileDescriptor socket = NewSocket();
    if (!address.bFits || !socket.IsOpen())
        return FileDescriptor();
    while (connect(socket.Get(), address.Get(), sizeof address.address) != 0) {
        if (!MayTryAgain(errno) || steady_clock::now() >= deadline)
            return FileDescriptor();
        std::this_thread::sleep_for(RETRY); // a full queue can't be polled
    }
    return IsSameUser(socket.Get()) ? std::move(socket) : FileDescriptor();
}

bool IsListening(const std::string& sPath)
{
    const LocalAddress address(sPath);
    const FileDescriptor socket = NewSocket();
    // A full queue is somebody's too.
    return address.bFits && socket.IsOpen() &&
           (connect(socket.Get(), address.Get(), sizeof address.address) == 0 || errno == EAGAIN);
}

bool SendAll(int nSocket, std::string_view sBytes, Deadline deadline)
{
    while (!sBytes.empty()) {
        const ssize_t nSent = send(nSocket, sBytes.data(), sBytes.size(), MSG_NOSIGNAL);
        if (nSent >= 0) {
            sBytes.remove_prefix(static_cast<std::size_t>(nSent));
            continue;
        }
        if (!MayTryAgain(errno) || steady_clock::now() >= deadline)
            return false;
        WaitFor(nSocket, POLLOUT, deadline);
    }
    return true;
}

std::optional<unsigned char> ReceiveByte(int nSocket, Deadline deadline)
{
    for (;;) {
        unsigned char byte = 0;
        const ssize_t nRead = recv(nSocket, &byte, 1, 0);
        if (nRead == 1)
            return byte;
        if (nRead == 0 || !MayTryAgain(errno) || steady_clock::now() >= deadline)
            return std::nullopt;
        WaitFor(nSocket, POLLIN, deadline);
    }
}
