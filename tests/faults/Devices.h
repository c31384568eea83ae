// Device nodes in the places of files.
#pragma once

#include "tests/faults/Form.h"

#include <string>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace LS::Tests {

constexpr unsigned ZERO_DEVICE = 5, FULL_DEVICE = 7;

/// Puts a device of memory under a name: for root a node of its own, which a program with a fault may replace
/// without harm to the system's; for others a link to that. @return whether it is there
inline bool PutDevice(const std::string& sPath, unsigned nDevice)
{
    if (geteuid() != 0)
        return symlink(nDevice == ZERO_DEVICE ? "/dev/zero" : "/dev/full", sPath.c_str()) == 0;
    if (mknod(sPath.c_str(), S_IFCHR | 0600, makedev(1, nDevice)) == 0)
        return true;
    ReportNotTried("devices can't be made here");
    return false;
}

} // namespace LS::Tests
