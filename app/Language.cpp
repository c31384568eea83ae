// Scans for catalogues, reads the choice and loads the texts.
#include "app/Language.h"

#include "Util/Paths.h"
#include "app/LanguageTable.h"
#include "xml/Config.h"
#include "xml/XmlNode.h"

#include <wx/filefn.h>
#include <wx/log.h>
#include <wx/translation.h>
#include <wx/utils.h>

#include <clocale>
#include <memory>

using LS::Util::JoinPath;

namespace {

constexpr const wchar_t* CATALOGUE_FOLDER = L"Languages";
constexpr const wchar_t* LANGUAGE_FILE = L"lsConfig.xml";
constexpr const wchar_t* DEFAULT_LANGUAGE = L"English (U.S.)";

wxString CatalogueFile(const wxString& folder, const wxString& domain)
{
    return JoinPath(folder.ToStdWstring(), domain.ToStdWstring() + L".mo");
}

/// The catalogues lie side by side in one folder; the library would look in one for each language.
class FlatLoader : public wxTranslationsLoader {
public:
    explicit FlatLoader(const wxString& folder) : m_folder(folder) {}

    wxMsgCatalog* LoadCatalog(const wxString& domain, const wxString&) override
    {
        const wxString file = CatalogueFile(m_folder, domain);
        return wxFileExists(file) ? wxMsgCatalog::CreateFromFile(file, domain) : nullptr;
    }

    /// A domain is named for its one language. From wxWidgets 3.2.3 on nothing else is loaded.
    wxArrayString GetAvailableTranslations(const wxString& domain) const override
    {
        return wxArrayString(1, &domain);
    }

private:
    wxString m_folder;
};

bool AddTexts(wxLocale& locale, const wxString& domain)
{
    const wxLogNull silent; // a broken catalogue is one message of ours, not three of the library's
    locale.AddCatalog(domain);
    return locale.IsLoaded(domain); // AddCatalog is content without a file where the texts are English
}

} // namespace

LanguageMap FindLanguages(const std::wstring& sProgramFolder)
{
    LanguageMap languages;
    const wxString folder = JoinPath(sProgramFolder, CATALOGUE_FOLDER);
    if (!wxDirExists(folder))
        return languages;
    for (const LanguageRow& row : LanguageRows())
        if (wxFileExists(CatalogueFile(folder, row.szCanonical)) && LibraryLanguage(row))
            languages[row.szDescription] = row.nNumber;
    return languages;
}

LanguageChoice LoadLanguage(const std::wstring& sProgramFolder, Config& config)
{
    LanguageChoice choice{FindLanguages(sProgramFolder), nullptr};
    const auto root = LS::Xml::XmlNode::CreateElement();
    root->SetFileName(JoinPath(sProgramFolder, LANGUAGE_FILE));
    if (!root->Load())
        return choice;
    config.m_language = LS::Xml::GetString(L"Language", DEFAULT_LANGUAGE, root);
    SetLanguage(config.m_language, sProgramFolder, choice);
    return choice;
}

bool SetLanguage(const wxString& description, const std::wstring& sProgramFolder, LanguageChoice& choice)
{
    const auto known = choice.languages.find(description);
    const LanguageRow* row = known == choice.languages.end() ? nullptr : FindLanguageRow(known->second);
    const wxLanguageInfo* info = row ? LibraryLanguage(*row) : nullptr;
    if (!info)
        return false;
    if (!wxLocale::IsAvailable(info->Language)) {
        wxLogError("This language is not supported by the system.");
        return false;
    }
    choice.locale.reset();  // its end restores the locale before it, so it must come before the next
    wxUnsetEnv("LANGUAGE"); // the toolkit's own texts would follow it, and not the locale
    choice.locale = std::make_unique<wxLocale>(info->Language, wxLOCALE_DONT_LOAD_DEFAULT);
    std::setlocale(LC_NUMERIC, "C");
    wxTranslations::Get()->SetLoader(new FlatLoader(JoinPath(sProgramFolder, CATALOGUE_FOLDER)));
    if (!AddTexts(*choice.locale, row->szCanonical)) {
        wxLogError("This language file error!");
        return false;
    }
    return true;
}
