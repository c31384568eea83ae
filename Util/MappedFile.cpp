// Whole-file mapping by the system's own call.
#include "Util/MappedFile.h"

#include "Util/FailureLog.h"
#include "Util/RegularFile.h"

#include <fcntl.h>
#include <sys/mman.h>

namespace LS::Util {

MappedFile::MappedFile(const char* szStep, const std::string& sPath, std::size_t nBytes) : m_nBytes(nBytes)
{
    const RegularFile file(szStep, sPath, O_RDONLY); // the mapping outlives the descriptor
    if (!file.IsOpen())
        return;
    if (static_cast<std::uint64_t>(file.Size()) < nBytes) {
        LogFailure(szStep, sPath, "the file is too short");
        return;
    }
    void* const pView = mmap(nullptr, nBytes, PROT_READ, MAP_PRIVATE, file.Descriptor(), 0);
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
