// The table of languages, and what the library in use makes of it.
#include "app/LanguageTable.h"

#include <gmock/gmock.h>
#include <wx/intl.h>

#include <set>
#include <string>
#include <vector>

namespace {

/// Whether the library's record is the very language of that name, and not another that it took for it.
bool HasName(const wxLanguageInfo& info, const wxString& canonical)
{
    return info.CanonicalName == canonical || info.GetCanonicalWithRegion() == canonical;
}

} // namespace

TEST(LanguageTable, NumbersHaveNoGapAndDescriptionsAreUnique)
{
    ASSERT_EQ(228U, LanguageRows().size());
    std::set<std::string> descriptions;
    std::int32_t nNumber = 2;
    for (const LanguageRow& row : LanguageRows()) {
        EXPECT_EQ(nNumber, row.nNumber);
        EXPECT_EQ(&row, FindLanguageRow(nNumber++));
        EXPECT_TRUE(descriptions.insert(row.szDescription).second) << row.szDescription;
    }
    for (const std::int32_t nNone : {-1, 0, 1, 230, INT32_MAX, INT32_MIN})
        EXPECT_EQ(nullptr, FindLanguageRow(nNone)) << nNone;
}

TEST(LanguageTable, KnownLanguages)
{
    const struct {
        std::int32_t number;
        std::string canonical, description;
    } cases[] = {
        {2, "ab", "Abkhazian"},
        {44, "zh_CN", "Chinese (Simplified)"},
        {58, "en_US", "English (U.S.)"},
        {78, "fr_FR", "French"},
        {87, "de_DE", "German"},
        {110, "ja_JP", "Japanese"},
        {151, "pt_BR", "Portuguese (Brazilian)"},
        {175, "es_ES", "Spanish"},
        {187, "es_ES", "Spanish (Modern)"},
        {229, "zu", "Zulu"},
    };
    for (const auto& c : cases) {
        const LanguageRow* row = FindLanguageRow(c.number);
        ASSERT_TRUE(row) << c.number;
        EXPECT_EQ(c.canonical, row->szCanonical);
        EXPECT_EQ(c.description, row->szDescription);
    }
}

// The three have no name, or one that is out of use.
TEST(LanguageTable, LibraryKnowsEachLanguage)
{
    std::vector<std::string> vsOtherName;
    for (const LanguageRow& row : LanguageRows()) {
        const wxLanguageInfo* info = LibraryLanguage(row);
        ASSERT_TRUE(info) << row.szDescription;
        if (!HasName(*info, row.szCanonical))
            vsOtherName.emplace_back(row.szDescription);
    }
    EXPECT_THAT(vsOtherName, testing::ElementsAre("Javanese", "Konkani", "Manipuri"));
}
