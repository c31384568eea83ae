// The table of languages, and what the library in use makes of it.
#include "app/LanguageTable.h"

#include <gtest/gtest.h>
#include <wx/intl.h>

#include <set>
#include <string>

TEST(LanguageTable, NumbersHaveNoGapAndTheLibraryKnowsEach)
{
    ASSERT_EQ(228U, LanguageRows().size());
    std::set<std::string> descriptions;
    std::int32_t nNumber = 2;
    for (const LanguageRow& row : LanguageRows()) {
        EXPECT_EQ(nNumber, row.nNumber);
        EXPECT_EQ(&row, FindLanguageRow(nNumber++));
        EXPECT_TRUE(descriptions.insert(row.szDescription).second) << row.szDescription;
        EXPECT_TRUE(LibraryLanguage(row)) << row.szDescription;
    }
    for (const std::int32_t nNone : {-1, 0, 1, 230, INT32_MAX, INT32_MIN})
        EXPECT_EQ(nullptr, FindLanguageRow(nNone)) << nNone;
}
