// Opens and closes regular files by the system's own calls.
#include "HDRFile/RegularFile.h"

#include "Util/FailureLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

RegularFile::RegularFile(const char* szPath, int nFlags)
    // Without O_NONBLOCK the open of a pipe waits for its other end; regular files know no such wait.
    : m_sPath(szPath), m_nFile(open(szPath, nFlags | O_NONBLOCK | O_CLOEXEC, 0666))
{
    struct stat status = {};
    if (m_nFile < 0 || fstat(m_nFile, &status) != 0) {
        LS::Util::LogFailure("save", m_sPath, LS::Util::SystemError());
    } else if (!S_ISREG(status.st_mode)) {
        LS::Util::LogFailure("save", m_sPath, "not a regular file");
    } else {
        m_nSize = status.st_size;
        return;
    }
    if (m_nFile >= 0)
        close(Release());
}

RegularFile::~RegularFile()
{
    if (m_nFile >= 0)
        close(m_nFile);
}

int RegularFile::Release()
{
    return std::exchange(m_nFile, -1);
}

bool RegularFile::Close()
{
    if (close(Release()) == 0)
        return true;
    LS::Util::LogFailure("save", m_sPath, LS::Util::SystemError());
    return false;
}
