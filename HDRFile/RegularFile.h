// Descriptors of regular files, opened without ever waiting for another process.
#pragma once

#include <cstdint>
#include <string>

/// Owns the descriptor of a regular file.
class RegularFile {
public:
    /// Opens a file. Anything but a regular file is refused, so a pipe without a second end gives a failure
    /// and not a wait. Failures are logged.
    /// @param szPath  in the file system's bytes
    /// @param nFlags  those of open(2); a new file gets mode 0666 less the process's mask
    RegularFile(const char* szPath, int nFlags);
    RegularFile(const RegularFile&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;
    ~RegularFile();

    bool IsOpen() const { return m_nFile >= 0; }
    int Descriptor() const { return m_nFile; }
    const std::string& Path() const { return m_sPath; }

    /// Bytes in the file when it was opened.
    std::int64_t Size() const { return m_nSize; }

    /// Gives the descriptor away.
    int Release();

    /// Closes the file before this object goes. @return false, logged, if the system reports an error
    bool Close();

private:
    std::string m_sPath;
    int m_nFile;
    std::int64_t m_nSize = 0;
};
