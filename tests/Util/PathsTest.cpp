// Paths between wide text and the file system's bytes, in the "C" locale of this test.
#include "Util/Paths.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

using namespace LS::Util;

TEST(Paths, WideAndNarrow)
{
    const struct {
        const char* name;
        std::string narrow;
        std::wstring wide;
    } cases[] = {
        {"plain", "/a/b.jpg", L"/a/b.jpg"},
        {"two bytes", "caf\xC3\xA9", L"caf\u00E9"},
        {"three bytes", "\xE5\x86\x99\xE7\x9C\x9F", L"\u5199\u771F"},
        {"four bytes", "\xF0\x9F\x93\xB7", L"\U0001F4F7"},
        {"Latin-1", "caf\xE9.jpg", L"caf\xDCE9.jpg"},
        {"cut character", "a\xE5\x86", L"a\xDCE5\xDC86"},
        {"overlong slash", "\xC0\xAF", L"\xDCC0\xDCAF"},
        {"encoded surrogate", "\xED\xA0\x80", L"\xDCED\xDCA0\xDC80"},
        {"beyond Unicode", "\xF4\x90\x80\x80", L"\xDCF4\xDC90\xDC80\xDC80"},
        {"empty", "", L""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.wide, WidePath(c.narrow));
        EXPECT_EQ(c.narrow, NarrowPath(c.wide));
    }
}

TEST(Paths, AnyBytesSurviveTheRoundTrip)
{
    std::mt19937 random(1); // NOLINT(bugprone-random-generator-seed,cert-msc51-cpp): the same bytes each run
    for (int i = 0; i < 2000; ++i) {
        std::string sBytes(random() % 12, '\0');
        for (char& c : sBytes)
            c = static_cast<char>(random());
        ASSERT_EQ(sBytes, NarrowPath(WidePath(sBytes)));
    }
}

TEST(Paths, JoinSplit)
{
    EXPECT_EQ(L"a/b", JoinPath(L"a", L"b"));
    EXPECT_EQ(L"a/b", JoinPath(L"a/", L"b"));
    EXPECT_EQ(L"/b", JoinPath(L"/", L"b"));
    EXPECT_EQ(L"b", JoinPath(L"", L"b"));
    EXPECT_EQ(L"a/", JoinPath(L"a", L""));

    const struct {
        const wchar_t* path;
        const wchar_t* folder;
        const wchar_t* name;
    } cases[] = {
        {L"/a/b.jpg", L"/a", L"b.jpg"},
        {L"/b.jpg", L"/", L"b.jpg"},
        {L"b.jpg", L"", L"b.jpg"},
        {L"/a/", L"/a", L""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(c.folder, FolderFromPath(c.path));
        EXPECT_EQ(c.name, FileNameFromPath(c.path));
    }
}

TEST(Paths, ProgramFolderHoldsThisProgram)
{
    const std::wstring sFolder = ProgramFolder();
    ASSERT_FALSE(sFolder.empty());
    EXPECT_EQ(L'/', sFolder.front());
    EXPECT_NE(L'/', sFolder.back());
}
