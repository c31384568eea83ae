// Checks, writes and renames the output files.
#include "cli/Outputs.h"

#include "Util/RegularFile.h"

#include <algorithm>
#include <set>
#include <sys/stat.h>
#include <utility>

namespace {

/// Tells one file from another, whatever its name.
using FileIdentity = std::pair<dev_t, ino_t>;

} // namespace

Outputs::Outputs(const Options& options, Console& console) : m_options(options), m_console(console) {}

std::vector<std::string> Outputs::Paths() const
{
    std::vector<std::string> vsPaths;
    for (const Output& output : m_options.vOutputs)
        vsPaths.push_back(output.sPath);
    if (!m_options.sSaveCurve.empty())
        vsPaths.push_back(m_options.sSaveCurve);
    return vsPaths;
}

bool Outputs::AllExist() const
{
    const std::vector<std::string> vsPaths = Paths();
    std::string sIgnored;
    return std::all_of(vsPaths.begin(), vsPaths.end(), [&sIgnored](const std::string& sPath) {
        return LS::Util::IsRegularFile(sPath, sIgnored);
    });
}

ExitCode Outputs::Check()
{
    std::set<FileIdentity> sources;
    struct stat status = {};
    for (const auto* pvsImages : {&m_options.vsImages, &m_options.vsKept})
        for (const std::string& sImage : *pvsImages)
            if (stat(sImage.c_str(), &status) == 0)
                sources.emplace(status.st_dev, status.st_ino);

    std::set<std::string> seen;
    for (const std::string& sPath : Paths()) {
        const bool bExists = stat(sPath.c_str(), &status) == 0;
        std::string sFault;
        if (!seen.insert(sPath).second)
            sFault = "is named twice as an output";
        else if (bExists && sources.contains({status.st_dev, status.st_ino}))
            sFault = "is one of the photographs and is not replaced";
        else if (bExists && !S_ISREG(status.st_mode))
            sFault = "is not a regular file";
        else if (bExists && !m_options.bForce)
            sFault = "exists already; --force replaces it";
        if (!sFault.empty())
            return m_console.Fail(ExitCode::Write, sPath, sFault);
    }
    return ExitCode::Done;
}

ExitCode Outputs::Write(const std::string& sPath,
                        const std::function<std::string(LS::Util::ReplacedFile& file)>& write)
{
    using LS::Util::Existing;
    PendingFile pending{sPath, std::make_unique<LS::Util::ReplacedFile>(
                                   sPath, m_options.bForce ? Existing::Replace : Existing::Refuse)};
    if (!pending.pFile->IsOpen())
        return m_console.Fail(ExitCode::Write, sPath, pending.pFile->Reason());
    if (const std::string sReason = write(*pending.pFile); !sReason.empty())
        return m_console.Fail(ExitCode::Write, sPath, sReason);
    m_vFiles.push_back(std::move(pending));
    return ExitCode::Done;
}

ExitCode Outputs::Publish()
{
    for (const PendingFile& pending : m_vFiles)
        if (!pending.pFile->Commit())
            return m_console.Fail(ExitCode::Write, pending.sPath, pending.pFile->Reason());
    return ExitCode::Done;
}
