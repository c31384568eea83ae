// The lock file that says whether the program runs already.
#pragma once

#include "Util/FileDescriptor.h"

#include <wx/string.h>

#include <chrono>
#include <string>

/// The name that wxSingleInstanceChecker is given: "LumiStrandHDR-" and the user's id. It makes a file of
/// that name in the home folder, writes its process id into it and holds it locked.
wxString InstanceLockName();

/// Readies the lock file for the checker: removes one that nobody holds, whatever process id it names, and
/// takes wrong permissions off one that is ours. What can't be mended stays, with a line in the log; the
/// checker then fails and takes nobody for running. To be called while this process holds no lock itself,
/// since a look at the file would give it up.
void PrepareInstanceLock();

/// Keeps two starts from looking at the lock at the same time, since a lock that is just being made looks
/// abandoned. Goes on without after a while, so that a start that hangs holds up nobody.
class StartGuard {
public:
    /// @param sFile  where all starts meet; made if missing. Empty: no guard
    explicit StartGuard(const std::string& sFile, std::chrono::milliseconds wait = std::chrono::seconds(5));

    bool IsHeld() const { return m_file.IsOpen(); }
    void Release() { m_file.Close(); }

private:
    LS::Util::FileDescriptor m_file;
};
