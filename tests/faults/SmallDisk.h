// A disk of its own that is soon full.
#pragma once

#include "tests/support/TempFolder.h"

#include <cstddef>
#include <string>

namespace LS::Tests {

/// A file system in memory that holds some bytes, in whole pages, and goes with this object.
///
/// Mounting needs a mount namespace of the process's own, which the first disk makes; where the system
/// refuses that to a test, there is no disk.
class SmallDisk {
public:
    explicit SmallDisk(std::size_t nBytes);
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk();

    bool IsMounted() const { return m_bMounted; }
    const std::string& Path() const { return m_folder.Path(); }

private:
    TempFolder m_folder;
    bool m_bMounted = false;
};

} // namespace LS::Tests
