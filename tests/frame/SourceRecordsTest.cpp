// Order, removal and moves of the records, against lists that a person can read.
#include "frame/SourceRecords.h"

#include "Util/Paths.h"
#include "engine/CacheFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using testing::ElementsAre;

namespace {

SourceRecords Records(const std::vector<wxString>& paths)
{
    SourceRecords records;
    for (const wxString& path : paths) {
        records.emplace_back(new lsImage(path));
        records.back()->SetRowId(static_cast<int>(records.size()) - 1);
    }
    return records;
}

std::string Letters(const SourceRecords& records)
{
    std::string sLetters;
    for (const auto& record : records)
        sLetters += record->GetPath().utf8_string();
    return sLetters;
}

bool RowIdsGrow(const SourceRecords& records)
{
    const auto notBelow = [](const auto& a, const auto& b) { return a->GetRowId() >= b->GetRowId(); };
    return std::adjacent_find(records.begin(), records.end(), notBelow) == records.end();
}

} // namespace

TEST(SourceRecords, PathsAreOrderedByFileNameUpperCaseFirst)
{
    wxArrayString paths;
    for (const char* szPath : {"/z/a.jpg", "/a/b.jpg", "/m/B.jpg", "c.jpg", "/q/a.jpg"})
        paths.Add(szPath);
    SortByFileName(paths);
    EXPECT_THAT(std::vector<wxString>(paths.begin(), paths.end()),
                ElementsAre("/m/B.jpg", "/z/a.jpg", "/q/a.jpg", "/a/b.jpg", "c.jpg"));
}

TEST(SourceRecords, TheCacheFileHasTheWholeNameOfTheSource)
{
    const wxString folder = CacheFolder();
    EXPECT_EQ(folder + "a.b.JPG.tmp", CacheFileOf("/x/y/a.b.JPG"));
    EXPECT_EQ(CacheFileOf("/one/a.jpg"), CacheFileOf("/two/a.jpg"));
    EXPECT_EQ(folder + wxString::FromUTF8("Ж é.jpg.tmp"), CacheFileOf(wxString::FromUTF8("/x/Ж é.jpg")));
}

TEST(SourceRecords, EachRemovedPathTakesItsFirstRecord)
{
    struct Case {
        std::vector<wxString> records, removed;
        const char* szLeft;
    };
    const Case cases[] = {
        {{"a", "b", "c"}, {"b"}, "ac"},
        {{"a", "b", "a", "c"}, {"a"}, "bac"},
        {{"a", "b", "a", "a"}, {"a", "a"}, "ba"},
        {{"a", "A"}, {"A"}, "a"},
        {{"a"}, {"a", "a"}, ""},
        {{"a", "b"}, {}, "ab"},
    };
    for (const Case& c : cases) {
        SourceRecords records = Records(c.records);
        RemoveRecords(records, c.removed);
        EXPECT_EQ(c.szLeft, Letters(records));
        EXPECT_TRUE(RowIdsGrow(records));
    }
}

TEST(SourceRecords, BlocksMoveAsOne)
{
    struct Case {
        std::vector<int> rows;
        const char *szUp, *szDown; // null where the block touches that end
    };
    const Case cases[] = {
        {{1}, "bacde", "acbde"},       {{1, 2}, "bcade", "adbce"}, {{1, 3}, "badce", "acbed"},
        {{1, 2, 3}, "bcdae", "aebcd"}, {{4}, "abced", nullptr},    {{0}, nullptr, "bacde"},
        {{1, 2, 4}, "bcaed", nullptr}, {{}, "abcde", "abcde"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.rows));
        if (c.szUp) {
            SourceRecords records = Records({"a", "b", "c", "d", "e"});
            MoveRecordsUp(records, c.rows);
            EXPECT_EQ(c.szUp, Letters(records));
            EXPECT_TRUE(RowIdsGrow(records));
        }
        if (c.szDown) {
            SourceRecords records = Records({"a", "b", "c", "d", "e"});
            MoveRecordsDown(records, c.rows);
            EXPECT_EQ(c.szDown, Letters(records));
            EXPECT_TRUE(RowIdsGrow(records));
        }
    }
}
