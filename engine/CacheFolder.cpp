// Composes, creates and empties the folder of temporary files.
#include "engine/CacheFolder.h"

#include "Util/Assertion.h"
#include "Util/Paths.h"

#include <cerrno>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <optional>
#include <sstream>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct Redirection {
    std::optional<std::wstring> sFolder;
    bool bUsed = false;
};

/// Never destroyed: the workspace asks for the folder when the process's static objects go.
Redirection& CurrentRedirection()
{
    static Redirection& redirection = *new Redirection;
    return redirection;
}

constexpr mode_t FOLDER_MODE = 0777; // less the user's mask

bool IsFolder(const std::string& sPath)
{
    struct stat status = {};
    return stat(sPath.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// Files only, of names with this ending. @return whether there was any
bool DeleteFiles(const std::wstring& sFolder, std::string_view sEnding)
{
    if (sFolder.empty()) // would otherwise mean the working directory
        return false;

    std::vector<fs::path> vMatches;
    std::error_code error;
    for (fs::directory_iterator it(LS::Util::NarrowPath(sFolder), error), end; !error && it != end;
         it.increment(error)) {
        std::error_code ignored;
        if (it->path().native().ends_with(sEnding) && !fs::is_directory(it->symlink_status(ignored)))
            vMatches.push_back(it->path());
    }
    for (const fs::path& match : vMatches)
        fs::remove(match, error);
    return !vMatches.empty();
}

} // namespace

std::wstring CacheFolder()
{
    Redirection& redirection = CurrentRedirection();
    redirection.bUsed = true;
    return LS::Util::JoinPath(redirection.sFolder
                                  ? *redirection.sFolder
                                  : LS::Util::JoinPath(LS::Util::ProgramFolder(), L"hdrcache"),
                              L"");
}

void RedirectCacheFolder(const std::wstring& sFolder)
{
    Redirection& redirection = CurrentRedirection();
    LS_ASSERT(!redirection.bUsed);
    LS_ASSERT(!redirection.sFolder);
    redirection.sFolder = sFolder;
}

bool CreateCacheFolder()
{
    const std::string sFolder = LS::Util::NarrowPath(CacheFolder());
    if (mkdir(sFolder.c_str(), FOLDER_MODE) == 0)
        return true;
    return errno == EEXIST && (IsFolder(sFolder) || (errno = ENOTDIR, false));
}

bool DeleteCacheFiles(const std::wstring& sFolder)
{
    return DeleteFiles(sFolder, ".tmp");
}

void EmptyCacheFolder()
{
    DeleteFiles(CacheFolder(), "");
}

std::wstring NewFloatCachePath()
{
    using namespace std::chrono;
    const std::time_t nNow = system_clock::to_time_t(system_clock::now());
    std::tm date = {};
    gmtime_r(&nNow, &date);
    const auto nTicks = duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();

    std::wostringstream name;
    name.imbue(std::locale::classic());
    name << CacheFolder() << date.tm_year + 1900 << L'-' << date.tm_mon + 1 << L'-' << date.tm_mday << L'-'
         << nTicks << L".tmp";
    return name.str();
}
