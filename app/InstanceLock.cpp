// Looks at the lock file the way the checker's lock itself works: by the record lock of its holder.
#include "app/InstanceLock.h"

#include "Util/FailureLog.h"
#include "Util/Paths.h"

#include <wx/utils.h>

#include <cerrno>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using LS::Util::FileDescriptor;
using LS::Util::LogFailure;
using LS::Util::SystemError;
using std::chrono::steady_clock;

namespace {

constexpr const char* STEP = "looking at the instance's lock";
constexpr mode_t LOCK_MODE = S_IRUSR | S_IWUSR; // the checker takes no other
constexpr std::chrono::milliseconds RETRY{10};

std::string LockPath()
{
    return LS::Util::NarrowPath(wxGetHomeDir().ToStdWstring()) + "/" + InstanceLockName().utf8_string();
}

/// The kernel drops a lock with its process, so a process id that was given away again can't mislead.
bool IsHeld(const std::string& sPath)
{
    const FileDescriptor file(open(sPath.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return !file.IsOpen() || fcntl(file.Get(), F_GETLK, &lock) != 0 || lock.l_type != F_UNLCK;
}

} // namespace

wxString InstanceLockName()
{
    return wxString::Format("LumiStrandHDR-%s", wxGetUserId());
}

void PrepareInstanceLock()
{
    const std::string sPath = LockPath();
    struct stat info;
    if (lstat(sPath.c_str(), &info) != 0) {
        if (errno != ENOENT)
            LogFailure(STEP, sPath, SystemError());
        return;
    }
    // The checker makes no links and can't lock through one.
    const bool bLink = S_ISLNK(info.st_mode);
    if (info.st_uid != geteuid() || (!bLink && !S_ISREG(info.st_mode))) {
        LogFailure(STEP, sPath, "this is no file of the program");
        return;
    }
    if (!bLink && (info.st_mode & 07777) != LOCK_MODE && chmod(sPath.c_str(), LOCK_MODE) != 0)
        LogFailure(STEP, sPath, SystemError());
    if ((bLink || !IsHeld(sPath)) && unlink(sPath.c_str()) != 0)
        LogFailure(STEP, sPath, SystemError());
}

StartGuard::StartGuard(const std::string& sFile, std::chrono::milliseconds wait)
{
    if (sFile.empty())
        return;
    const auto deadline = steady_clock::now() + wait;
    FileDescriptor file(open(sFile.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, LOCK_MODE));
    if (!file.IsOpen())
        return;
    while (flock(file.Get(), LOCK_EX | LOCK_NB) != 0) {
        if (steady_clock::now() >= deadline)
            return;
        std::this_thread::sleep_for(RETRY);
    }
    m_file = std::move(file);
}
