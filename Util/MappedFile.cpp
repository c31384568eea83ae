// Whole-file mapping by the system's own call.
#include "Util/MappedFile.h"

#include "Util/FailureLog.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace LS::Util {

namespace {

/// Closes the descriptor; the mapping outlives it.
class Descriptor {
public:
    explicit Descriptor(const std::string& sPath) : m_nFile(open(sPath.c_str(), O_RDONLY | O_CLOEXEC)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor()
    {
        if (m_nFile >= 0)
            close(m_nFile);
    }
    int Get() const { return m_nFile; }

private:
    int m_nFile;
};

} // namespace

MappedFile::MappedFile(const char* szStep, const std::string& sPath, std::size_t nBytes) : m_nBytes(nBytes)
{
    const Descriptor file(sPath);
    struct stat status = {};
    if (file.Get() < 0 || fstat(file.Get(), &status) != 0) {
        LogFailure(szStep, sPath, SystemError());
        return;
    }
    if (status.st_size < 0 || static_cast<std::size_t>(status.st_size) < nBytes) {
        LogFailure(szStep, sPath, "the file is too short");
        return;
    }
    void* const pView = mmap(nullptr, nBytes, PROT_READ, MAP_PRIVATE, file.Get(), 0);
    if (pView == MAP_FAILED)
        LogFailure(szStep, sPath, SystemError());
    else
        m_pView = pView;
}

MappedFile::~MappedFile()
{
    if (m_pView)
        munmap(m_pView, m_nBytes);
}

} // namespace LS::Util
