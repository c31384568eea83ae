// The photographs of a folder.
#include "cli/FolderShots.h"

#include "cli/Cancel.h"
#include "cli/Series.h"
#include "image/ExifReader.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

std::string LowerCaseExtension(const fs::path& path)
{
    std::string sExtension = path.extension().native();
    std::transform(sExtension.begin(), sExtension.end(), sExtension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return sExtension;
}

bool IsPhotographsName(const fs::path& path)
{
    constexpr std::array<std::string_view, 4> EXTENSIONS{".jpg", ".jpeg", ".tif", ".tiff"};
    const bool bHidden = path.filename().native().starts_with('.');
    return !bHidden &&
           std::find(EXTENSIONS.begin(), EXTENSIONS.end(), LowerCaseExtension(path)) != EXTENSIONS.end();
}

/// Sorted, so that what is told comes in the same order on every machine.
ExitCode ListPhotographs(const std::string& sFolder, Console& console, std::vector<std::string>& vsFiles)
{
    std::error_code error;
    for (fs::directory_iterator entry(sFolder, error), end; !error && entry != end; entry.increment(error))
        if (IsPhotographsName(entry->path()))
            vsFiles.push_back(entry->path().native());
    if (error)
        return console.Fail(ExitCode::Input, sFolder, error.message());
    std::sort(vsFiles.begin(), vsFiles.end());
    return ExitCode::Done;
}

std::chrono::microseconds FileTime(const std::string& sPath)
{
    struct stat status = {};
    stat(sPath.c_str(), &status); // a file that went away meanwhile fails at its merge
    return std::chrono::seconds(status.st_mtim.tv_sec) +
           std::chrono::microseconds(status.st_mtim.tv_nsec / 1000);
}

/// @return what keeps the photograph from being merged; nothing if it can be
std::string ReadFile(const Options& options, const std::string& sPath, Shot& shot)
{
    ShotValues values;
    std::string sReason;
    if (ReadShot(sPath, values, &sReason) != ExifOutcome::Read) {
        if (!sReason.empty())
            return sReason;
        values.exposure.exposureTime = values.exposure.fNumber = 0; // so that a missing value is seen
    }
    shot.sPath = sPath;
    shot.exposure = {options.vfShutters.empty() ? values.exposure.exposureTime : options.vfShutters[0],
                     options.vfApertures.empty() ? values.exposure.fNumber : options.vfApertures[0]};
    shot.taken = values.taken ? *values.taken : FileTime(sPath);
    shot.sSource =
        Formatted("%s%d x %d\n%s\n%s", values.sCamera.c_str(), values.width, values.height,
                  LowerCaseExtension(sPath).c_str(), values.taken ? "camera's clock" : "file's clock");
    return ExposureFault(shot.exposure.exposureTime, shot.exposure.fNumber);
}

} // namespace

ExitCode ReadFolder(const Options& options, Console& console, FolderShots& found)
{
    const ExitCode code = ListPhotographs(options.sGroup, console, found.vsFiles);
    if (code != ExitCode::Done)
        return code;
    for (const std::string& sPath : found.vsFiles) {
        if (CancelRequested())
            return console.Fail(ExitCode::Cancelled, "", "");
        Shot shot;
        const std::string sFault = ReadFile(options, sPath, shot);
        if (sFault.empty())
            found.vShots.push_back(std::move(shot));
        else
            console.Note(sPath, "passed over: " + sFault);
    }
    return ExitCode::Done;
}
