// Ownership of a file descriptor.
#pragma once

#include <unistd.h>

#include <utility>

namespace LS::Util {

/// Closes its descriptor when it goes; -1 stands for none.
class FileDescriptor {
public:
    explicit FileDescriptor(int nFile = -1) : m_nFile(nFile) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_nFile(other.Release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        if (this != &other) {
            Close();
            m_nFile = other.Release();
        }
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { Close(); }

    bool IsOpen() const { return m_nFile >= 0; }
    int Get() const { return m_nFile; }
    int Release() { return std::exchange(m_nFile, -1); }

    void Close()
    {
        if (IsOpen())
            ::close(Release());
    }

private:
    int m_nFile;
};

} // namespace LS::Util
