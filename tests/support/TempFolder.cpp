// Temporary folders and whole-file access for tests.
#include "tests/support/TempFolder.h"

#include "Util/Paths.h"
#include "Util/UniqueFolder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

namespace LS::Tests {

TempFolder::TempFolder() : m_sPath(Util::MakeUniqueFolder(fs::temp_directory_path() / "lumistrand-test-"))
{
    if (m_sPath.empty())
        throw std::runtime_error("no temporary folder in " + fs::temp_directory_path().native());
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    fs::remove_all(m_sPath, ignored);
}

std::string TempFolder::File(std::string_view sName) const
{
    return m_sPath + "/" + std::string(sName);
}

std::wstring TempFolder::WideFile(std::string_view sName) const
{
    return Util::WidePath(File(sName));
}

std::vector<std::string> NamesIn(const std::string& sFolder)
{
    std::vector<std::string> vNames;
    for (const fs::directory_entry& entry : fs::directory_iterator(sFolder))
        vNames.push_back(entry.path().filename().native());
    std::sort(vNames.begin(), vNames.end());
    return vNames;
}

Bytes ReadBytes(const std::string& sPath)
{
    std::ifstream file(sPath, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string ReadText(const std::string& sPath)
{
    const Bytes bytes = ReadBytes(sPath);
    return {bytes.begin(), bytes.end()};
}

void WriteBytes(const std::string& sPath, const void* pData, std::size_t nBytes)
{
    std::ofstream file(sPath, std::ios::binary);
    file.write(static_cast<const char*>(pData), static_cast<std::streamsize>(nBytes));
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + sPath);
}

void WriteText(const std::string& sPath, std::string_view sText)
{
    WriteBytes(sPath, sText.data(), sText.size());
}

} // namespace LS::Tests
