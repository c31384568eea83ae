// Finds a folder that only this user can enter, and names the socket in it.
#include "app/InstanceSocket.h"

#include "Util/FailureLog.h"
#include "Util/Paths.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <wx/utils.h>

using LS::Util::LogFailure;

namespace {

constexpr const char* STEP = "finding a place for the instance's socket";
constexpr const char* FOLDER_IN_HOME = ".lumistrand-hdr";
constexpr const char* SUFFIX = ".socket";
constexpr std::size_t MAX_PATH_BYTES = sizeof(sockaddr_un::sun_path) - 1;

/// Links are refused, since another user could turn one elsewhere after this look.
bool IsPrivateFolder(const std::string& sFolder)
{
    struct stat info;
    return lstat(sFolder.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && info.st_uid == geteuid() &&
           (info.st_mode & 07777) == 0700;
}

/// Makes a folder if it is missing. @return its path; empty, logged, if it isn't private then
std::string PrivateFolder(const std::string& sFolder)
{
    mkdir(sFolder.c_str(), 0700);
    if (IsPrivateFolder(sFolder))
        return sFolder;
    LogFailure(STEP, sFolder, "this is no folder that only its user can enter");
    return {};
}

std::string BaseFolder()
{
    const char* szRuntime = std::getenv("XDG_RUNTIME_DIR");
    if (szRuntime && *szRuntime == '/' && IsPrivateFolder(szRuntime))
        return szRuntime;
    const std::wstring sHome = wxGetHomeDir().ToStdWstring();
    return sHome.empty() ? std::string() : PrivateFolder(LS::Util::NarrowPath(sHome) + "/" + FOLDER_IN_HOME);
}

/// FNV-1a, 64 bits; http://www.isthe.com/chongo/tech/comp/fnv/
std::uint64_t Hash(std::string_view sText)
{
    std::uint64_t nHash = 0xcbf29ce484222325;
    for (const char c : sText)
        nHash = (nHash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
    return nHash;
}

std::string HashedFolder(const std::string& sPath)
{
    char szName[64];
    std::snprintf(szName, sizeof szName, "/tmp/lumistrand-hdr-%u-%016llx", static_cast<unsigned>(geteuid()),
                  static_cast<unsigned long long>(Hash(sPath)));
    return PrivateFolder(szName);
}

} // namespace

std::string InstanceSocketPath(const std::string& sService)
{
    const std::string sName = "/" + sService + SUFFIX;
    std::string sFolder = BaseFolder();
    if (!sFolder.empty() && (sFolder + sName).size() > MAX_PATH_BYTES)
        sFolder = HashedFolder(sFolder + sName);
    return sFolder.empty() ? std::string() : sFolder + sName;
}
