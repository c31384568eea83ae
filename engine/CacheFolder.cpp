// Composes, creates and empties the folder of temporary files.
#include "engine/CacheFolder.h"

#include "Util/Assertion.h"
#include "Util/FailureLog.h"
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
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct State {
    std::optional<std::wstring> sRedirection;
    bool bUsed = false;
    bool bOwned = false;
};

/// Never destroyed: the workspace asks for the folder when the process's static objects go.
State& CurrentState()
{
    static State& state = *new State;
    return state;
}

// What is decoded here may be closed to others where it came from.
constexpr mode_t FOLDER_MODE = 0700;

bool IsFolder(const std::string& sPath)
{
    struct stat status = {};
    return stat(sPath.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// A folder of an earlier version may be open to others. One behind a link is the user's own affair.
void CloseToOthers(const std::string& sFolder)
{
    struct stat status = {};
    if (lstat(sFolder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid() &&
        (status.st_mode & 07777) != FOLDER_MODE && chmod(sFolder.c_str(), FOLDER_MODE) != 0)
        LS::Util::LogFailure("closing the cache folder to others", sFolder, LS::Util::SystemError());
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
    State& state = CurrentState();
    state.bUsed = true;
    return LS::Util::JoinPath(state.sRedirection ? *state.sRedirection
                                                 : LS::Util::JoinPath(LS::Util::ProgramFolder(), L"hdrcache"),
                              L"");
}

void RedirectCacheFolder(const std::wstring& sFolder)
{
    State& state = CurrentState();
    LS_ASSERT(!state.bUsed);
    LS_ASSERT(!state.sRedirection);
    state.sRedirection = sFolder;
    state.bOwned = true;
}

void OwnCacheFolder()
{
    CurrentState().bOwned = true;
}

bool OwnsCacheFolder()
{
    return CurrentState().bOwned;
}

bool CreateCacheFolder()
{
    const std::string sFolder = LS::Util::NarrowPath(CacheFolder());
    if (mkdir(sFolder.c_str(), FOLDER_MODE) == 0)
        return true;
    if (errno != EEXIST)
        return false;
    CloseToOthers(sFolder);
    return IsFolder(sFolder) || (errno = ENOTDIR, false);
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
