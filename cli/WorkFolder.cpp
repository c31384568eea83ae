// Makes, keeps and removes the private folder of a run.
#include "cli/WorkFolder.h"

#include "Util/FailureLog.h"
#include "Util/Paths.h"
#include "Util/UniqueFolder.h"
#include "engine/CacheFolder.h"

#include <filesystem>
#include <new>

namespace fs = std::filesystem;

WorkFolder::~WorkFolder()
try {
    std::error_code ignored;
    if (!m_sPath.empty())
        fs::remove_all(m_sPath, ignored);
} catch (const std::bad_alloc&) {
    return; // the folder stays, as after a crash; that is no reason for one
}

std::string WorkFolder::Create(const std::string& sParent)
{
    std::error_code error;
    m_sParent =
        sParent.empty() ? fs::temp_directory_path(error).native() : fs::absolute(sParent, error).native();
    if (error)
        return m_sParent + ": " + error.message();
    m_sPath = LS::Util::MakeUniqueFolder(m_sParent + "/lumistrand-");
    if (m_sPath.empty())
        return m_sParent + ": no folder for working files can be made: " + LS::Util::SystemError();
    RedirectCacheFolder(LS::Util::WidePath(m_sPath));
    return {};
}

std::string WorkFolder::File(const std::string& sName) const
{
    return m_sPath + "/" + sName;
}

bool WorkFolder::CanKeep(const std::string& sName) const
{
    std::error_code ignored;
    return !fs::exists(fs::symlink_status(m_sParent + "/" + sName, ignored));
}

std::string WorkFolder::Keep(const std::string& sName)
{
    std::error_code error;
    fs::rename(File(sName), m_sParent + "/" + sName, error);
    return error ? m_sParent + "/" + sName + ": " + error.message() : "";
}
