// Paths between wide text and the file system's bytes, in the "C" locale of this test.
#include "Util/Paths.h"
#include "Util/UniqueFolder.h"

#include <gtest/gtest.h>

#include <string>

using namespace LS::Util;

TEST(Paths, WideAndNarrow)
{
    const struct {
        const char* name;
        std::string narrow;
        std::wstring wide;
    } cases[] = {
        {"one to four bytes", "/a/\xC3\xA9\xE5\x86\x99\xF0\x9F\x93\xB7", L"/a/\u00E9\u5199\U0001F4F7"},
        {"Latin-1", "caf\xE9.jpg", L"caf\xDCE9.jpg"},
        {"first and last escape", "\x80\xFF", L"\xDC80\xDCFF"},
        {"encoded surrogate", "\xED\xA0\x80", L"\xDCED\xDCA0\xDC80"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.wide, WidePath(c.narrow));
        EXPECT_EQ(c.narrow, NarrowPath(c.wide));
    }
}

TEST(Paths, JoinAndSplit)
{
    const struct {
        const wchar_t *folder, *name, *path;
    } cases[] = {
        {L"/a", L"b.jpg", L"/a/b.jpg"},
        {L"/", L"b.jpg", L"/b.jpg"},
        {L"", L"b.jpg", L"b.jpg"},
        {L"/a", L"", L"/a/"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.path, JoinPath(c.folder, c.name));
        EXPECT_EQ(c.folder, FolderFromPath(c.path));
        EXPECT_EQ(c.name, FileNameFromPath(c.path));
    }
    EXPECT_TRUE(ProgramFolder().starts_with(L'/') && ProgramFolder().ends_with(L"/tests/Util"));
}

TEST(UniqueFolder, NoneWhereNoneCanBeMade)
{
    EXPECT_EQ("", MakeUniqueFolder("/proc/folder-"));
}
