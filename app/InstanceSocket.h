// Where the running instance listens for later starts.
#pragma once

#include <string>

/// The path of the Unix socket of a service, the same for everybody who runs as this user. It lies in
/// $XDG_RUNTIME_DIR where that is a folder of ours that is closed to others, else in a folder of that kind
/// below the home, which is made if missing. A path that a socket can't have (more than 107 bytes) is
/// replaced by one in a private folder of the temporary directory, whose name carries a hash of the path.
/// @return empty, with the reason in the log, where there is no folder that only we can enter
std::string InstanceSocketPath(const std::string& sService);
