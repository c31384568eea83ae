// Finding catalogues, reading the choice, and the texts and numbers that follow from it.
#include "app/Language.h"

#include "Util/Paths.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/TempFolder.h"
#include "xml/Config.h"

#include <gtest/gtest.h>
#include <wx/intl.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

const std::string CATALOGUES = LS_CATALOGUE_FOLDER;

/// A program folder with a French catalogue under some names.
struct ProgramFolder : TempFolder {
    explicit ProgramFolder(const std::vector<std::string>& vsNames)
    {
        fs::create_directory(File("Languages"));
        for (const std::string& sName : vsNames)
            fs::copy_file(CATALOGUES + "/fr_FR.mo", Catalogue(sName));
    }

    std::string Catalogue(const std::string& sName) const { return File("Languages/" + sName + ".mo"); }
    std::wstring Wide() const { return LS::Util::WidePath(Path()); }
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
        for (const std::string sName : {"fr_FR", "en_US"}) {
            const std::string sFile = s_locales.File(sName) + ".UTF-8";
            // NOLINTNEXTLINE(bugprone-command-processor): our own words
            ASSERT_EQ(0, std::system(("localedef -i " + sName + " -f UTF-8 '" + sFile + "'").c_str()));
        }
        setenv("LOCPATH", s_locales.Path().c_str(), 1);
    }
    static void TearDownTestSuite() { unsetenv("LOCPATH"); }

    inline static const TempFolder s_locales;
};

} // namespace

TEST(Languages, AreThoseOfTheCatalogues)
{
    const struct {
        std::vector<std::string> vsCatalogues;
        LanguageMap languages;
    } cases[] = {
        {{}, {}},
        {{"fr_FR"}, {{"French", 78}}},
        {{"es_ES"}, {{"Spanish", 175}, {"Spanish (Modern)", 187}}},
        {{"ab", "jw", "zu"}, {{"Abkhazian", 2}, {"Javanese", 111}, {"Zulu", 229}}},
        {{"fr", "FR_fr", "xx", "en_MW"}, {}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.languages, FindLanguages(ProgramFolder(c.vsCatalogues).Wide()))
            << testing::PrintToString(c.vsCatalogues);
    EXPECT_EQ(LanguageMap(), FindLanguages(TempFolder().WideFile("missing")));
}

TEST_F(Language, IsThatOfTheFile)
{
    const std::string sWhole = ReadText(CATALOGUES + "/fr_FR.mo");
    const std::string sFrench = "<a Language='French'/>", sNone = "English (U.S.)", sUnset = "as it was";
    const struct {
        const char* szName;
        std::string sCatalogue, sContent, sXml, sLanguage, sText;
        std::vector<std::string> vsLog;
    } cases[] = {
        {"no file", "fr_FR", sWhole, "", sUnset, "Aperture", {}},
        {"French", "fr_FR", sWhole, sFrench, "French", "Ouverture", {}},
        {"as an element", "fr_FR", sWhole, "<a><Language>French</Language></a>", "French", "Ouverture", {}},
        {"deeper", "fr_FR", sWhole, "<a><b Language='French'/></a>", sNone, "Aperture", {}},
        {"one without a catalogue", "fr_FR", sWhole, "<a Language='%s%n'/>", "%s%n", "Aperture", {}},
        {"no key, but a catalogue", "en_US", sWhole, "<a/>", sNone, "Ouverture", {}},
        {"unknown to the system",
         "de_DE",
         sWhole,
         "<a Language='German'/>",
         "German",
         "Aperture",
         {"This language is not supported by the system."}},
        {"cut catalogue",
         "fr_FR",
         sWhole.substr(0, 20),
         sFrench,
         "French",
         "Aperture",
         {"This language file error!"}},
        {"empty catalogue", "fr_FR", "", sFrench, "French", "Aperture", {"This language file error!"}},
        {"cut XML", "fr_FR", sWhole, "<a Language='French'>", sUnset, "Aperture", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        const ProgramFolder folder({});
        WriteText(folder.Catalogue(c.sCatalogue), c.sContent);
        if (!c.sXml.empty())
            WriteText(folder.File("lsConfig.xml"), c.sXml);
        const LogRecorder log;
        Config config;
        config.m_language = sUnset;
        const LanguageChoice choice = LoadLanguage(folder.Wide(), config);
        EXPECT_EQ(c.sLanguage, config.m_language.utf8_string());
        EXPECT_EQ(c.sText, Text());
        EXPECT_EQ("0.5", wxString::Format("%.1f", 0.5));
        EXPECT_EQ(c.vsLog, log.Lines());
    }
    EXPECT_EQ("Aperture", Text()); // the choice is gone, and its texts with it
}

TEST_F(Language, OneFollowsAnother)
{
    const ProgramFolder folder({"fr_FR"});
    fs::copy_file(CATALOGUES + "/it_IT.mo", folder.Catalogue("en_US"));
    LanguageChoice choice{FindLanguages(folder.Wide()), nullptr};
    const struct {
        const char *szLanguage, *szText;
        bool bIsSet;
    } steps[] = {
        {"French", "Ouverture", true}, {"English (U.S.)", "Diaframma", true}, {"Zulu", "Diaframma", false}};
    for (const auto& step : steps) {
        EXPECT_EQ(step.bIsSet, SetLanguage(step.szLanguage, folder.Wide(), choice));
        EXPECT_EQ(step.szText, Text());
    }
}
