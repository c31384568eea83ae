// Opens and closes regular files by the system's own calls.
#include "Util/RegularFile.h"

#include "Util/FailureLog.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace LS::Util {

namespace {

constexpr const char* NOT_REGULAR = "not a regular file";
constexpr const char* TOO_SHORT = "the file is too short";

} // namespace

bool IsRegularFile(const std::string& sPath, std::string& sReason)
{
    struct stat status = {};
    if (stat(sPath.c_str(), &status) != 0)
        sReason = SystemError();
    else if (!S_ISREG(status.st_mode))
        sReason = NOT_REGULAR;
    else
        return true;
    return false;
}

bool IsMissing(const std::string& sPath)
{
    struct stat status = {};
    return stat(sPath.c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

RegularFile::RegularFile(const char* szStep, const std::string& sPath, int nFlags, mode_t nMode)
    // Without O_NONBLOCK the open of a pipe waits for its other end; regular files know no such wait.
    : m_szStep(szStep), m_sPath(sPath), m_file(open(sPath.c_str(), nFlags | O_NONBLOCK | O_CLOEXEC, nMode))
{
    struct stat status = {};
    if (!IsOpen() || fstat(Descriptor(), &status) != 0) {
        Log(SystemError());
    } else if (!S_ISREG(status.st_mode)) {
        Log(NOT_REGULAR);
    } else {
        m_nSize = status.st_size;
        return;
    }
    m_file.Close();
}

bool RegularFile::Holds(std::size_t nBytes) const
{
    if (!IsOpen())
        return false;
    const bool bHolds = static_cast<std::uint64_t>(m_nSize) >= nBytes;
    if (!bHolds)
        Log(TOO_SHORT);
    return bHolds;
}

bool RegularFile::Read(std::size_t nOffset, void* pData, std::size_t nBytes) const
{
    auto* pNext = static_cast<unsigned char*>(pData);
    while (nBytes > 0) {
        const ssize_t nRead = pread(Descriptor(), pNext, nBytes, static_cast<off_t>(nOffset));
        if (nRead < 0 && errno == EINTR)
            continue;
        if (nRead <= 0) {
            Log(nRead < 0 ? SystemError() : TOO_SHORT);
            return false;
        }
        const auto nDone = static_cast<std::size_t>(nRead);
        pNext += nDone;
        nOffset += nDone;
        nBytes -= nDone;
    }
    return true;
}

bool RegularFile::Write(const void* pData, std::size_t nBytes)
{
    const auto* pNext = static_cast<const unsigned char*>(pData);
    while (nBytes > 0) {
        const ssize_t nWritten = write(Descriptor(), pNext, nBytes);
        if (nWritten < 0 && errno == EINTR)
            continue;
        if (nWritten < 0) {
            Log(SystemError());
            return false;
        }
        pNext += nWritten;
        nBytes -= static_cast<std::size_t>(nWritten);
    }
    return true;
}

bool RegularFile::Close()
{
    if (close(Release()) == 0)
        return true;
    Log(SystemError());
    return false;
}

void RegularFile::Log(const std::string& sReason) const
{
    LogFailure(m_szStep, m_sPath, sReason);
}

} // namespace LS::Util
