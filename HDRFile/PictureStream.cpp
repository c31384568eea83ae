// Opens, buffers and closes the stream of a picture file.
#include "HDRFile/PictureStream.h"

#include "Util/FailureLog.h"
#include "Util/RegularFile.h"

#include <fcntl.h>

#include <cerrno>
#include <cstddef>

namespace {

// Large beside an encoded row, so that the system is called once for several of them.
constexpr std::size_t BUFFER_SIZE = std::size_t{256} * 1024;

} // namespace

PictureStream::PictureStream(const char* szPath) : m_sPath(szPath)
{
    LS::Util::RegularFile file("save", szPath, O_WRONLY | O_CREAT | O_TRUNC);
    if (!file.IsOpen())
        return;
    m_pFile.reset(fdopen(file.Descriptor(), "wb"));
    if (!m_pFile) {
        LS::Util::LogFailure("save", m_sPath, LS::Util::SystemError());
        return;
    }
    file.Release();
    m_vBuffer.resize(BUFFER_SIZE);
    // The system's library takes a size only together with a buffer.
    std::setvbuf(m_pFile.get(), m_vBuffer.data(), _IOFBF, m_vBuffer.size());
}

bool PictureStream::Close()
{
    const bool bWritten = std::ferror(m_pFile.get()) == 0;
    errno = 0;
    if (std::fclose(m_pFile.release()) == 0 && bWritten)
        return true;
    LS::Util::LogFailure("save", m_sPath, LS::Util::SystemError());
    return false;
}
