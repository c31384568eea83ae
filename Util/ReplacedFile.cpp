// A sibling file in the same folder, renamed when it is whole.
#include "Util/ReplacedFile.h"

#include "Util/FailureLog.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace LS::Util {

namespace {

constexpr int MAX_LINKS = 40; // the system's own limit
constexpr int MAX_NAMES = 100;
constexpr unsigned PERMISSIONS = 0777;

/// The name at the end of a chain of links. Links among the folders are the system's to follow.
std::string BehindLinks(std::string sPath)
{
    for (int i = 0; i < MAX_LINKS; ++i) {
        std::error_code noLink;
        const fs::path behind = fs::read_symlink(sPath, noLink);
        if (noLink)
            break;
        sPath = (fs::path(sPath).parent_path() / behind).native();
    }
    return sPath;
}

/// A name of its own rather than one made from the target's, which may have the greatest length already.
bool RandomName(std::string& sName)
{
    std::uint64_t nRandom = 0;
    if (getrandom(&nRandom, sizeof nRandom, 0) != sizeof nRandom)
        return false;
    std::array<char, 48> szName{};
    std::snprintf(szName.data(), szName.size(), ".lumistrand-%016llx.tmp",
                  static_cast<unsigned long long>(nRandom));
    sName = szName.data();
    return true;
}

/// Some file systems can't refuse to replace by themselves (EINVAL), some have no hard links either (EPERM).
/// The last resort leaves a moment in which another program's new file would be lost.
bool RenameToFreeName(const char* szFrom, const char* szTo)
{
    const auto notSupported = [] {
        return errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP || errno == EPERM;
    };
    if (renameat2(AT_FDCWD, szFrom, AT_FDCWD, szTo, RENAME_NOREPLACE) == 0)
        return true;
    if (!notSupported())
        return false;
    if (link(szFrom, szTo) == 0) {
        unlink(szFrom);
        return true;
    }
    if (!notSupported())
        return false;
    struct stat status = {};
    if (lstat(szTo, &status) == 0) {
        errno = EEXIST;
        return false;
    }
    return rename(szFrom, szTo) == 0;
}

} // namespace

ReplacedFile::ReplacedFile(const std::string& sTarget, Existing existing)
    : m_sTarget(sTarget), m_existing(existing)
{
    if (Examine())
        CreateSibling();
}

ReplacedFile::~ReplacedFile()
{
    if (m_nFile < 0)
        return;
    close(m_nFile);
    unlink(m_sPath.c_str());
}

bool ReplacedFile::Fail(std::string sReason)
{
    if (m_sReason.empty())
        m_sReason = std::move(sReason);
    return false;
}

bool ReplacedFile::FailWithSystemError()
{
    return Fail(SystemError());
}

/// Finds out what the wanted name stands for now.
bool ReplacedFile::Examine()
{
    if (m_sTarget.find('\0') != std::string::npos)
        return Fail("a name can't hold a null character");

    struct stat status = {};
    const bool bExists = (m_existing == Existing::Refuse ? lstat : stat)(m_sTarget.c_str(), &status) == 0;
    if (!bExists && errno != ENOENT)
        return FailWithSystemError();
    if (bExists && m_existing == Existing::Refuse)
        return Fail(SystemError(EEXIST));
    if (bExists && S_ISDIR(status.st_mode))
        return Fail(SystemError(EISDIR));
    if (bExists && !S_ISREG(status.st_mode))
        return Fail("not a regular file");
    if (bExists && faccessat(AT_FDCWD, m_sTarget.c_str(), W_OK, AT_EACCESS) != 0)
        return FailWithSystemError(); // a rename would ask for the folder's permissions only

    if (m_existing == Existing::Replace)
        m_sTarget = BehindLinks(m_sTarget);
    if (bExists)
        m_nMode = status.st_mode & PERMISSIONS;
    return true;
}

bool ReplacedFile::CreateSibling()
{
    const std::size_t nName = m_sTarget.rfind('/') + 1; // 0 without a separator
    if (nName == m_sTarget.size())
        return Fail(m_sTarget.empty() ? "no name given" : SystemError(EISDIR));

    // Never open to more people than the file that it replaces, and always to the writer that opens it by
    // name.
    const unsigned nMode = m_nMode ? *m_nMode | S_IRUSR | S_IWUSR : 0666U;
    for (int i = 0; i < MAX_NAMES && m_nFile < 0; ++i) {
        std::string sName;
        if (!RandomName(sName))
            return FailWithSystemError();
        m_sPath = m_sTarget.substr(0, nName) + sName;
        m_nFile = open(m_sPath.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, nMode);
        if (m_nFile < 0 && errno != EEXIST)
            return FailWithSystemError();
    }
    return m_nFile >= 0 || FailWithSystemError();
}

bool ReplacedFile::Write(const void* pData, std::size_t nBytes)
{
    if (!IsOpen() || !m_sReason.empty())
        return Fail("not open");
    const char* pNext = static_cast<const char*>(pData);
    while (nBytes > 0) {
        const ssize_t nWritten = write(m_nFile, pNext, nBytes);
        if (nWritten < 0 && errno == EINTR)
            continue;
        if (nWritten < 0)
            return FailWithSystemError();
        pNext += nWritten;
        nBytes -= static_cast<std::size_t>(nWritten);
    }
    return true;
}

/// Without this, an error of a network disk comes after the rename, and a power failure may leave a renamed
/// file without content.
bool ReplacedFile::Synchronise()
{
    // Where this fails, the file system knows no permissions, or the sibling's are the narrower ones.
    if (m_nMode)
        static_cast<void>(fchmod(m_nFile, *m_nMode));
    const bool bOnDisk = fsync(m_nFile) == 0 || errno == EINVAL || errno == ENOSYS; // not known there
    return bOnDisk || FailWithSystemError();
}

bool ReplacedFile::Commit()
{
    if (!IsOpen() || !m_sReason.empty())
        return Fail("not open");
    if (!Synchronise())
        return false;
    const bool bRenamed = m_existing == Existing::Refuse
                              ? RenameToFreeName(m_sPath.c_str(), m_sTarget.c_str())
                              : rename(m_sPath.c_str(), m_sTarget.c_str()) == 0;
    if (!bRenamed)
        return FailWithSystemError();
    close(m_nFile); // all bytes are on the disk, so nothing can come of this
    m_nFile = -1;
    return true;
}

} // namespace LS::Util
