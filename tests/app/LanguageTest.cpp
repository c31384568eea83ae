// Finding catalogues, reading the choice, and the texts and numbers that follow from it.
#include "app/Language.h"

#include "Util/Paths.h"
#include "tests/support/TempFolder.h"
#include "xml/Config.h"

#include <gtest/gtest.h>
#include <wx/intl.h>
#include <wx/log.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

/// The messages of the log as long as it lives.
class Messages : private wxLog {
public:
    Messages() : m_previous(wxLog::SetActiveTarget(this)) {}
    ~Messages() override { wxLog::SetActiveTarget(m_previous); }

    std::vector<std::string> vsLines;

private:
    void DoLogRecord(wxLogLevel, const wxString& message, const wxLogRecordInfo&) override
    {
        vsLines.push_back(message.utf8_string());
    }

    wxLog* m_previous;
};

/// A program folder with catalogues.
struct ProgramFolder : TempFolder {
    explicit ProgramFolder(const std::vector<std::string>& vsCatalogues)
    {
        fs::create_directory(File("Languages"));
        for (const std::string& sName : vsCatalogues)
            fs::copy_file(std::string(LS_CATALOGUE_FOLDER) + "/fr_FR.mo", Catalogue(sName));
    }

    std::string Catalogue(const std::string& sName) const { return File("Languages/" + sName + ".mo"); }
    std::wstring Wide() const { return LS::Util::WidePath(Path()); }
    void Choose(const std::string& sXml) const { WriteText(File("lsConfig.xml"), sXml); }
};

std::string Text()
{
    return wxGetTranslation("Aperture").utf8_string();
}

/// A system with French and American English, next to which it knows no other language.
class Language : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        s_locales = new TempFolder;
        for (const std::string sName : {"fr_FR", "en_US"}) {
            const std::string sCommand =
                "localedef -i " + sName + " -f UTF-8 '" + s_locales->File(sName) + ".UTF-8'";
            ASSERT_EQ(0, std::system(sCommand.c_str())); // NOLINT(bugprone-command-processor): our own words
        }
        setenv("LOCPATH", s_locales->Path().c_str(), 1);
    }

    static void TearDownTestSuite()
    {
        unsetenv("LOCPATH");
        delete s_locales;
    }

    static TempFolder* s_locales;
};

TempFolder* Language::s_locales = nullptr;

} // namespace

TEST_F(Language, CataloguesMakeLanguagesKnown)
{
    const struct {
        const char* name;
        std::vector<std::string> catalogues;
        LanguageMap languages;
    } cases[] = {
        {"none", {}, {}},
        {"one", {"fr_FR"}, {{"French", 78}}},
        {"one for two languages", {"es_ES"}, {{"Spanish", 175}, {"Spanish (Modern)", 187}}},
        {"first and last", {"ab", "zu"}, {{"Abkhazian", 2}, {"Zulu", 229}}},
        {"by description only", {"jw", "yi"}, {{"Javanese", 111}, {"Yiddish", 226}}},
        {"of no language", {"fr", "FR_fr", "xx", "en_MW"}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.languages, FindLanguages(ProgramFolder(c.catalogues).Wide()));
    }
    EXPECT_EQ(LanguageMap(), FindLanguages(TempFolder().WideFile("missing")));
    const ProgramFolder folder({});
    fs::create_directory(folder.Catalogue("fr_FR"));
    EXPECT_EQ(LanguageMap(), FindLanguages(folder.Wide()));
}

TEST_F(Language, FileDecides)
{
    const std::string sUnset = "as it was";
    const struct {
        const char* name;
        std::vector<std::string> catalogues;
        std::string xml; ///< empty: no file
        std::string language, text;
        bool locale;
        std::vector<std::string> log;
    } cases[] = {
        {"no file", {"fr_FR"}, "", sUnset, "Aperture", false, {}},
        {"French", {"fr_FR"}, "<a Language='French'/>", "French", "Ouverture", true, {}},
        {"as an element", {"fr_FR"}, "<a><Language>French</Language></a>", "French", "Ouverture", true, {}},
        {"deeper", {"fr_FR"}, "<a><b Language='French'/></a>", "English (U.S.)", "Aperture", false, {}},
        {"another language", {"fr_FR"}, "<a Language='Zulu'/>", "Zulu", "Aperture", false, {}},
        {"no language", {"fr_FR"}, "<a Language='%s%n'/>", "%s%n", "Aperture", false, {}},
        {"no key, no catalogue", {"fr_FR"}, "<a/>", "English (U.S.)", "Aperture", false, {}},
        {"no key, but a catalogue", {"en_US"}, "<a/>", "English (U.S.)", "Ouverture", true, {}},
        {"unknown to the system",
         {"de_DE"},
         "<a Language='German'/>",
         "German",
         "Aperture",
         false,
         {"This language is not supported by the system."}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const ProgramFolder folder(c.catalogues);
        if (!c.xml.empty())
            folder.Choose(c.xml);
        Messages log;
        Config config;
        config.m_language = sUnset;
        const LanguageChoice choice = LoadLanguage(folder.Wide(), config);
        EXPECT_EQ(c.language, config.m_language.utf8_string());
        EXPECT_EQ(c.locale, choice.locale != nullptr);
        EXPECT_EQ(c.text, Text());
        EXPECT_EQ("0.5", wxString::Format("%.1f", 0.5));
        EXPECT_EQ(c.log, log.vsLines);
    }
    EXPECT_EQ("Aperture", Text()); // the choice is gone, and its texts with it
}

TEST_F(Language, BrokenFilesLeaveEnglish)
{
    const std::string sWhole = [] {
        const Bytes bytes = ReadBytes(std::string(LS_CATALOGUE_FOLDER) + "/fr_FR.mo");
        return std::string(bytes.begin(), bytes.end());
    }();
    const struct {
        const char* name;
        std::string catalogue, xml;
        std::vector<std::string> log;
    } cases[] = {
        {"catalogue of text", "no catalogue at all", "<a Language='French'/>", {"This language file error!"}},
        {"empty catalogue", "", "<a Language='French'/>", {"This language file error!"}},
        {"catalogue's head alone",
         sWhole.substr(0, 20),
         "<a Language='French'/>",
         {"This language file error!"}},
        {"no XML", sWhole, "Language=French", {}},
        {"cut XML", sWhole, "<a Language='French'>", {}},
        {"empty XML", sWhole, " ", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const ProgramFolder folder({});
        WriteText(folder.Catalogue("fr_FR"), c.catalogue);
        folder.Choose(c.xml);
        Messages log;
        Config config;
        const LanguageChoice choice = LoadLanguage(folder.Wide(), config);
        EXPECT_EQ("Aperture", Text());
        EXPECT_EQ(!c.log.empty(), choice.locale != nullptr); // the locale stays set
        EXPECT_EQ(c.log, log.vsLines);
        EXPECT_EQ("0.5", wxString::Format("%.1f", 0.5));
    }
}

TEST_F(Language, OneLanguageFollowsAnother)
{
    const ProgramFolder folder({"fr_FR"});
    fs::copy_file(std::string(LS_CATALOGUE_FOLDER) + "/it_IT.mo", folder.Catalogue("en_US"));
    LanguageChoice choice{FindLanguages(folder.Wide()), nullptr};
    EXPECT_TRUE(SetLanguage("French", folder.Wide(), choice));
    EXPECT_EQ("Ouverture", Text());
    EXPECT_TRUE(SetLanguage("English (U.S.)", folder.Wide(), choice));
    EXPECT_EQ("Diaframma", Text());
    EXPECT_FALSE(SetLanguage("Zulu", folder.Wide(), choice));
    EXPECT_EQ("Diaframma", Text()); // nothing changes
    EXPECT_TRUE(SetLanguage("French", folder.Wide(), choice));
    EXPECT_EQ("Ouverture", Text());
}
