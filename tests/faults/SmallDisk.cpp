// A disk of its own that is soon full.
#include "tests/faults/SmallDisk.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <algorithm>

namespace LS::Tests {

namespace {

bool WriteProcFile(const char* szPath, const std::string& sText)
{
    const int nFile = open(szPath, O_WRONLY | O_CLOEXEC);
    const bool bWritten =
        nFile >= 0 && write(nFile, sText.data(), sText.size()) == static_cast<ssize_t>(sText.size());
    close(nFile);
    return bWritten;
}

/// Mounts of this process are its own from then on. A user who isn't root becomes one of a namespace of
/// users.
bool LeaveMounts()
{
    const auto nUser = std::to_string(getuid()), nGroup = std::to_string(getgid());
    if (unshare(CLONE_NEWNS) != 0) {
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
            return false;
        WriteProcFile("/proc/self/setgroups", "deny");
        if (!WriteProcFile("/proc/self/uid_map", "0 " + nUser + " 1") ||
            !WriteProcFile("/proc/self/gid_map", "0 " + nGroup + " 1"))
            return false;
    }
    return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

} // namespace

SmallDisk::SmallDisk(std::size_t nBytes)
{
    static const bool bMayMount = LeaveMounts();
    const std::string sSize = "size=" + std::to_string(std::max<std::size_t>(nBytes, 1));
    m_bMounted =
        bMayMount && mount("tmpfs", Path().c_str(), "tmpfs", MS_NOSUID | MS_NODEV, sSize.c_str()) == 0;
}

SmallDisk::~SmallDisk()
{
    if (m_bMounted)
        umount2(Path().c_str(), MNT_DETACH);
}

} // namespace LS::Tests
