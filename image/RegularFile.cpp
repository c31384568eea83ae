// Tells files from what only has a path like one.
#include "image/RegularFile.h"

#include "Util/FailureLog.h"

#include <sys/stat.h>

bool IsRegularFile(const std::string& sPath, std::string& sReason)
{
    struct stat status {};
    if (::stat(sPath.c_str(), &status) != 0) {
        sReason = LS::Util::SystemError();
        return false;
    }
    if (!S_ISREG(status.st_mode)) {
        sReason = "not a regular file";
        return false;
    }
    return true;
}
