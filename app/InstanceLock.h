// The lock file that says whether the program runs already.
#pragma once

#include "Util/FileDescriptor.h"

#include <wx/string.h>

#include <chrono>
#include <string>

/// The lock of the first instance: a file in the home folder, which its holder keeps locked and removes at
/// its end. What a dead process left there is nobody's, whatever process id it was.
///
/// It is a lock of the open file, not of the process: a record lock would be gone as soon as the process, a
/// file dialog in it say, opens and closes the same file.
class InstanceLock {
public:
    /// The name of the file: "LumiStrandHDR-" and the user's id.
    static wxString Name();

    /// Takes the lock unless another process holds it. Where it is out of reach, as in a home that can't be
    /// written, the reason is in the log and nobody is taken for running.
    InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;
    ~InstanceLock();

    bool IsAnotherRunning() const { return m_bOther; }

private:
    bool TryToLock();

    std::string m_sPath;
    LS::Util::FileDescriptor m_file; ///< open while this process holds the lock
    bool m_bOther = false;
};

/// Keeps two starts from looking at lock and socket at the same time, since the socket comes a little after
/// the lock. Goes on without after a while, so that a start that hangs holds up nobody.
class StartGuard {
public:
    /// @param sFile  where all starts meet; made if missing. Empty: no guard
    explicit StartGuard(const std::string& sFile, std::chrono::milliseconds wait = std::chrono::seconds(5));

    bool IsHeld() const { return m_file.IsOpen(); }
    void Release() { m_file.Close(); }

private:
    LS::Util::FileDescriptor m_file;
};
