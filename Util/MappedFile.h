// Read-only access to a whole file as memory.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace LS::Util {

/// A read-only mapping of a file, gone with this object. Hold it only as long as it takes to copy what is
/// wanted: a file that is cut meanwhile would fault.
class MappedFile {
public:
    /// Maps a file whose size is known. Shorter than that, missing or not to be mapped: IsOpen is false and
    /// the reason is logged.
    /// @param szStep  what the file is wanted for, for the log
    /// @param sPath   in the file system's bytes
    MappedFile(const char* szStep, const std::string& sPath, std::size_t nBytes);
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;
    ~MappedFile();

    bool IsOpen() const { return m_pView != nullptr; }

    /// The first nBytes bytes of the file; empty unless open.
    std::span<const unsigned char> Data() const
    {
        return {static_cast<const unsigned char*>(m_pView), m_pView ? m_nBytes : 0};
    }

private:
    void* m_pView = nullptr;
    std::size_t m_nBytes;
};

} // namespace LS::Util
