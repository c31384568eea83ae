// The C stream through which a picture file is written.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

/// A picture under construction. Left without Close, as after a failure that has been told already, it is
/// closed in silence and keeps what was written.
class PictureStream {
public:
    /// Creates or empties a regular file. Failures are logged.
    /// @param szPath  in the file system's bytes
    explicit PictureStream(const char* szPath);

    bool IsOpen() const { return m_pFile != nullptr; }

    /// The stream, open for binary writing; stays this object's.
    FILE* File() const { return m_pFile.get(); }

    /// Flushes and closes.
    /// @return true when all that was ever written has reached the file; anything else is logged
    bool Close();

private:
    struct Closer {
        void operator()(FILE* pFile) const { std::fclose(pFile); }
    };

    std::string m_sPath;
    std::vector<char> m_vBuffer; // outlives the stream that uses it
    std::unique_ptr<FILE, Closer> m_pFile;
};
