// Keys, versions and moments of writing of the settings file.
#include "xml/Config.h"

#include "Util/FailureLog.h"
#include "Util/RegularFile.h"

#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include <wx/log.h>
#include <wx/stdpaths.h>

using namespace LS;
using Util::JoinPath;

namespace {

constexpr const wchar_t* FILE_NAME = L"lsConfigHDR.xml";
constexpr double UPGRADED_VERSION = 5.0;

/// Left alone by the end of the process: a start that failed mustn't write the file.
Config*& OnlyInstance()
{
    static Config* pInstance = nullptr;
    return pInstance;
}

/// Makes the folder if it is missing; the one above it must exist.
bool EnsureFolder(const std::wstring& sFolder)
{
    const std::string sNarrow = Util::NarrowPath(sFolder);
    std::error_code error;
    if (std::filesystem::is_directory(sNarrow, error) || std::filesystem::create_directory(sNarrow, error))
        return true;
    Util::LogFailure("making the folder of the settings", sNarrow, error.message());
    return false;
}

} // namespace

Config* Config::Instance()
{
    if (!OnlyInstance())
        OnlyInstance() = new Config;
    return OnlyInstance();
}

void Config::DestroyInstance()
{
    const std::unique_ptr<Config> pLast(std::exchange(OnlyInstance(), nullptr));
}

Config::Config()
    : m_lastImagePath(wxStandardPaths::Get().GetDocumentsDir()),
      m_fullName(JoinPath(JoinPath(Util::ProgramFolder(), L"output"), L""))
{
}

Config::~Config()
{
    Write();
}

bool Config::Load(const std::wstring& sFolder)
{
    const std::wstring sFile = JoinPath(sFolder, FILE_NAME);
    m_root = Xml::XmlNode::CreateElement();
    m_root->SetFileName(sFile);

    if (Util::IsMissing(Util::NarrowPath(sFile))) {
        const bool bWritten = Write();
        if (!bWritten)
            wxLogError("Write config error!");
        return bWritten;
    }
    if (!m_root->Load())
        return Overwrite();

    const double fFileVersion = Xml::GetDouble(L"Version", m_root);
    if (fFileVersion == m_version)
        return Read();
    if (fFileVersion > m_version)
        return Overwrite();
    if (fFileVersion == UPGRADED_VERSION)
        return Upgrade() && Overwrite();
    return true; // its values may mean something else, so nothing is read; the end of the program rewrites it
}

bool Config::Read()
{
    const auto readText = [this](const wchar_t* szKey, wxString& text) {
        text = Xml::GetString(szKey, text.ToStdWstring(), m_root);
    };
    const auto readNumber = [this](const wchar_t* szKey, std::int32_t& nNumber) {
        nNumber = Xml::GetInt(szKey, nNumber, m_root);
    };
    readText(L"Language", m_language);
    readText(L"Settings/LastImagePath", m_lastImagePath);
    readText(L"Save/ImageType", m_imageType);
    readText(L"Save/FullName", m_fullName);
    readNumber(L"Save/JPEGCompression", m_jpegCompression);
    readNumber(L"Save/BitDepth", m_bitDepth);
    readNumber(L"Save/CompressionType", m_compressionType);
    return true;
}

bool Config::Write()
{
    if (!m_root || !EnsureFolder(Util::FolderFromPath(m_root->GetFileName())))
        return false;
    m_root->Clear();
    m_root->SetName(L"LumiStrandBatch");
    Xml::SetDouble(L"Version", m_version, m_root);
    Xml::SetString(L"Author", L"Ordan", m_root);
    Xml::SetString(L"Language", m_language.ToStdWstring(), m_root);
    Xml::AddElement(L"Settings", L"", m_root);
    Xml::SetString(L"Settings/LastImagePath", m_lastImagePath.ToStdWstring(), m_root);
    Xml::AddElement(L"Save", L"", m_root);
    Xml::SetString(L"Save/ImageType", m_imageType.ToStdWstring(), m_root);
    Xml::SetString(L"Save/FullName", m_fullName.ToStdWstring(), m_root);
    Xml::SetInt(L"Save/JPEGCompression", m_jpegCompression, m_root);
    Xml::SetInt(L"Save/BitDepth", m_bitDepth, m_root);
    Xml::SetInt(L"Save/CompressionType", m_compressionType, m_root);
    return m_root->Save();
}

bool Config::Overwrite()
{
    if (Write())
        return true;
    wxLogError("Overwrite config error!");
    return false;
}

bool Config::Upgrade()
{
    return true;
}
