// Locks of open files, which the kernel drops with their process.
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

constexpr const char* STEP = "locking the instance";
constexpr mode_t LOCK_MODE = S_IRUSR | S_IWUSR;
constexpr std::chrono::milliseconds RETRY{10};

/// Readies what lies at the lock's path: a link goes, and permissions that keep us out are set right.
/// @return false, logged, if it is no file of the program
bool PrepareFile(const std::string& sPath)
{
    struct stat info;
    if (lstat(sPath.c_str(), &info) != 0)
        return true; // usually since there is nothing yet; else the open says why
    const bool bLink = S_ISLNK(info.st_mode);
    if (info.st_uid != geteuid() || (!bLink && !S_ISREG(info.st_mode))) {
        LogFailure(STEP, sPath, "this is no file of the program");
        return false;
    }
    if (bLink)
        unlink(sPath.c_str());
    else if ((info.st_mode & 07777) != LOCK_MODE)
        chmod(sPath.c_str(), LOCK_MODE);
    return true;
}

/// Whether the path still leads to an open file: its last holder may have removed it since it was opened.
bool LeadsTo(const std::string& sPath, const FileDescriptor& file)
{
    struct stat opened, named;
    return fstat(file.Get(), &opened) == 0 && lstat(sPath.c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

} // namespace

wxString InstanceLock::Name()
{
    return wxString::Format("LumiStrandHDR-%s", wxGetUserId());
}

InstanceLock::InstanceLock()
    : m_sPath(LS::Util::NarrowPath(wxGetHomeDir().ToStdWstring()) + "/" + Name().utf8_string())
{
    if (!PrepareFile(m_sPath))
        return;
    while (!TryToLock()) {
    }
}

/// @return false if another process removed the file meanwhile, so that there is a new one to try
bool InstanceLock::TryToLock()
{
    FileDescriptor file(
        open(m_sPath.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, LOCK_MODE));
    if (!file.IsOpen()) {
        LogFailure(STEP, m_sPath, SystemError());
        return true;
    }
    if (flock(file.Get(), LOCK_EX | LOCK_NB) != 0) {
        m_bOther = errno == EWOULDBLOCK;
        if (!m_bOther)
            LogFailure(STEP, m_sPath, SystemError());
        return true;
    }
    if (!LeadsTo(m_sPath, file))
        return false;
    m_file = std::move(file);
    return true;
}

InstanceLock::~InstanceLock()
{
    // While it is locked: after that it may be the next one's.
    if (m_file.IsOpen() && LeadsTo(m_sPath, m_file))
        unlink(m_sPath.c_str());
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
