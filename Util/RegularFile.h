// Regular files, opened without ever waiting for another process.
#pragma once

#include "Util/FileDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/types.h>

namespace LS::Util {

/// Whether a path leads to a regular file, links followed. Nothing is opened, so nothing can wait for a pipe
/// or wake a device.
/// @param sPath    in the file system's bytes
/// @param sReason  receives why not, for a log
bool IsRegularFile(const std::string& sPath, std::string& sReason);

/// Whether a path leads to nothing, links followed. False also where that can't be found out.
/// @param sPath  in the file system's bytes
bool IsMissing(const std::string& sPath);

/// The mode of working files: what they hold may be closed to others where it came from.
constexpr mode_t OWNER_ONLY = 0600;

/// Owns the descriptor of a regular file.
class RegularFile {
public:
    /// Opens a file. Anything but a regular file is refused, so a pipe without a second end gives a failure
    /// and not a wait. Failures are logged.
    /// @param szStep  what the file is wanted for, for the log
    /// @param sPath   in the file system's bytes
    /// @param nFlags  those of open(2)
    /// @param nMode   of a new file, less the process's mask
    RegularFile(const char* szStep, const std::string& sPath, int nFlags, mode_t nMode = 0666);

    bool IsOpen() const { return m_file.IsOpen(); }
    int Descriptor() const { return m_file.Get(); }
    const std::string& Path() const { return m_sPath; }

    /// Whether the file is open and held so many bytes when it was opened. @return false, logged, if it is
    /// open and shorter
    bool Holds(std::size_t nBytes) const;

    /// Copies nBytes bytes from nOffset on; the reading position plays no part. By calls and not through a
    /// mapping: where a file is cut meanwhile, or a disk can't read it any more, a call fails while a mapping
    /// would end the program by a signal.
    /// @return false, logged, if they can't all be read
    bool Read(std::size_t nOffset, void* pData, std::size_t nBytes) const;

    /// Writes behind what was written before. @return false, logged, if not everything can be written
    bool Write(const void* pData, std::size_t nBytes);

    /// Gives the descriptor away.
    int Release() { return m_file.Release(); }

    /// Closes the file before this object goes. @return false, logged, if the system reports an error
    bool Close();

private:
    void Log(const std::string& sReason) const;

    const char* m_szStep;
    std::string m_sPath;
    FileDescriptor m_file;
    std::int64_t m_nSize = 0;
};

} // namespace LS::Util
