// What a translator may get wrong and no tool of gettext sees: codes, shortcuts, letters that clash.
#include <gtest/gtest.h>
#include <wx/regex.h>
#include <wx/string.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

/// The texts of a catalogue's source with their translations. Each may go on in further lines.
std::map<wxString, wxString> Catalogue(const std::filesystem::path& path)
{
    std::map<wxString, wxString> texts;
    wxString text;
    wxString* part = &text;
    std::ifstream file(path);
    for (std::string sLine; std::getline(file, sLine);) {
        if (sLine.starts_with("msgid "))
            text.clear(), part = &text;
        if (sLine.starts_with("msgstr "))
            part = &texts[text];
        const std::size_t nFirst = sLine.find('"') + 1;
        if (nFirst > 0 && !sLine.starts_with('#'))
            *part += wxString::FromUTF8(sLine.substr(nFirst, sLine.rfind('"') - nFirst));
    }
    texts.erase(""); // the head
    return texts;
}

wxString Match(const wxString& text, const char* szPattern)
{
    const wxRegEx pattern(szPattern);
    return pattern.Matches(text) ? pattern.GetMatch(text) : wxString();
}

} // namespace

TEST(Catalogues, KeepWhatIsNoLanguage)
{
    const std::vector<std::string> groups[] = {
        {"&File", "&Edit", "&Help"},
        {"&New...\\tCtrl+N", "&Save\\tCtrl+S", "E&xit\\tCtrl+Q"},
        {"&Help Topics...\\tF1", "&About Tolvanic Lumistrand"},
        {"&OK", "&Cancel"},
        {"&Save", "&Cancel"},
    };
    int nCatalogues = 0;
    for (const auto& entry : std::filesystem::directory_iterator(LS_LOCALE_FOLDER)) {
        if (entry.path().extension() != ".po")
            continue;
        ++nCatalogues;
        auto texts = Catalogue(entry.path());
        EXPECT_GT(texts.size(), 60U);
        for (const auto& [text, translation] : texts) {
            SCOPED_TRACE(entry.path().filename().string() + ": " + text.utf8_string());
            for (const char* const szKept :
                 {"^#[0-9]{7} ", "\\\\t.*", "%[^a-zA-Z%]*[a-zA-Z%]", "&", "\\.{3}", " $"})
                EXPECT_EQ(Match(text, szKept), Match(translation, szKept));
        }
        for (const auto& group : groups) {
            std::set<wxString> letters;
            for (const std::string& sText : group)
                EXPECT_TRUE(letters.insert(texts[sText].AfterFirst('&').Left(1).Lower()).second)
                    << entry.path() << ": " << texts[sText];
        }
    }
    EXPECT_EQ(10, nCatalogues);
}
