// What a translator may get wrong and no tool of gettext sees: codes, shortcuts, letters that clash, widths.
#include "app/LanguageTable.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <wx/dcscreen.h>
#include <wx/dir.h>
#include <wx/filename.h>
#include <wx/regex.h>
#include <wx/settings.h>
#include <wx/translation.h>

#include <algorithm>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace LS::Tests;

namespace {

/// The texts of the template: the strings behind "msgid", which may go on in further lines.
std::vector<wxString> Texts()
{
    std::vector<wxString> vTexts;
    const Bytes bytes = ReadBytes(LS_TEMPLATE);
    std::istringstream file(std::string(bytes.begin(), bytes.end()));
    bool bInText = false;
    for (std::string sLine; std::getline(file, sLine);) {
        if (sLine.starts_with("msgid "))
            vTexts.emplace_back();
        bInText = sLine.starts_with("msgid ") || (bInText && sLine.starts_with('"'));
        if (!bInText)
            continue;
        const auto nFirst = sLine.find('"') + 1;
        wxString piece = wxString::FromUTF8(sLine.substr(nFirst, sLine.rfind('"') - nFirst));
        piece.Replace("\\t", "\t");
        piece.Replace("\\n", "\n");
        piece.Replace("\\\"", "\"");
        vTexts.back() += piece;
    }
    std::erase(vTexts, wxString()); // the head
    return vTexts;
}

wxString Match(const wxString& text, const char* szPattern)
{
    const wxRegEx pattern(szPattern);
    return pattern.Matches(text) ? pattern.GetMatch(text) : wxString();
}

/// All conversions of printf, in their order.
wxString Conversions(wxString text)
{
    const wxRegEx pattern("%[^a-zA-Z%]*[a-zA-Z%]");
    wxString found;
    while (pattern.Matches(text)) {
        found += pattern.GetMatch(text) + " ";
        std::size_t nStart = 0, nLength = 0;
        pattern.GetMatch(&nStart, &nLength);
        text.erase(0, nStart + nLength);
    }
    return found;
}

wxString Mnemonic(const wxString& label)
{
    return label.AfterFirst('&').Left(1).Lower();
}

/// Gives the texts of one file, whatever it is asked for.
class OneFile : public wxTranslationsLoader {
public:
    explicit OneFile(const wxString& file) : m_file(file) {}
    wxMsgCatalog* LoadCatalog(const wxString& domain, const wxString&) override
    {
        return wxMsgCatalog::CreateFromFile(m_file, domain);
    }
    wxArrayString GetAvailableTranslations(const wxString&) const override { return {}; }

private:
    wxString m_file;
};

struct Catalogue {
    std::string name;
    std::unique_ptr<wxTranslations> texts = std::make_unique<wxTranslations>();

    /// Empty if there is no translation.
    wxString operator()(const wxString& text) const
    {
        const wxString* translation = texts->GetTranslatedString(text);
        return translation ? *translation : wxString();
    }
};

std::vector<Catalogue> Catalogues()
{
    wxArrayString files;
    wxDir::GetAllFiles(LS_CATALOGUE_FOLDER, &files, "*.mo", wxDIR_FILES);
    std::vector<Catalogue> vCatalogues;
    for (const wxString& file : files) {
        Catalogue& catalogue = vCatalogues.emplace_back();
        catalogue.name = wxFileName(file).GetName().utf8_string();
        catalogue.texts->SetLanguage(catalogue.name);
        catalogue.texts->SetLoader(new OneFile(file));
        EXPECT_TRUE(catalogue.texts->AddCatalog(catalogue.name)) << file;
    }
    return vCatalogues;
}

} // namespace

TEST(Catalogues, AreNamedAfterLanguages)
{
    std::set<std::string> names;
    for (const Catalogue& catalogue : Catalogues()) {
        EXPECT_TRUE(std::ranges::any_of(LanguageRows(), [&](const LanguageRow& row) {
            return catalogue.name == row.szCanonical;
        })) << catalogue.name;
        names.insert(catalogue.name);
    }
    EXPECT_EQ(10U, names.size());
}

TEST(Catalogues, KeepWhatIsNoLanguage)
{
    const std::vector<wxString> vTexts = Texts();
    ASSERT_GT(vTexts.size(), 60U);
    for (const Catalogue& catalogue : Catalogues()) {
        for (const wxString& text : vTexts) {
            SCOPED_TRACE(catalogue.name + ": " + text.utf8_string());
            const wxString translation = catalogue(text);
            ASSERT_FALSE(translation.empty());
            EXPECT_EQ(Match(text, "^#[0-9]{7} "), Match(translation, "^#[0-9]{7} "));
            EXPECT_EQ(Match(text, "\t.*"), Match(translation, "\t.*"));
            EXPECT_EQ(Conversions(text), Conversions(translation));
            EXPECT_EQ(text.Freq('&'), translation.Freq('&'));
            EXPECT_EQ(text.Contains("..."), translation.Contains("..."));
            EXPECT_EQ(text.EndsWith(" "), translation.EndsWith(" "));
            EXPECT_EQ(text.EndsWith(":"), translation.EndsWith(":") || translation.EndsWith(L"\uff1a"));
        }
    }
}

TEST(Catalogues, LettersOfOneMenuDiffer)
{
    const std::vector<wxString> groups[] = {
        {"&File", "&Edit", "&Help"},
        {"&New...\tCtrl+N", "&Save\tCtrl+S", "E&xit\tCtrl+Q"},
        {"&Help Topics...\tF1", "&About Tolvanic Lumistrand"},
        {"&OK", "&Cancel"},
        {"&Save", "&Cancel"},
    };
    for (const Catalogue& catalogue : Catalogues()) {
        for (const auto& group : groups) {
            std::set<wxString> letters;
            for (const wxString& text : group) {
                const wxString letter = Mnemonic(catalogue(text));
                EXPECT_TRUE(!letter.Strip().empty() && letters.insert(letter).second)
                    << catalogue.name << ": " << catalogue(text);
            }
        }
    }
}

TEST(Catalogues, ColumnsHoldTheirLabels)
{
    const struct {
        const char* label;
        int width;
    } columns[] = {{"File Name", 205}, {"Shutter", 100}, {"Aperture", 100}, {"Exposure Compensation", 150}};
    wxScreenDC dc;
    dc.SetFont(wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT));
    for (const Catalogue& catalogue : Catalogues())
        for (const auto& c : columns)
            EXPECT_LE(dc.GetTextExtent(catalogue(c.label)).x, c.width)
                << catalogue.name << ": " << catalogue(c.label);
}
