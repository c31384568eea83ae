// What is UTF-8 and what isn't. The encodings themselves are the business of the tests of paths.
#include "Util/Utf8.h"

#include <gtest/gtest.h>

#include <string>

using namespace LS::Util;

TEST(Utf8, ReplacesWhatIsNoCharacter)
{
    const struct {
        const char* name;
        std::string bytes;
        std::wstring wide;
        bool whole;
    } cases[] = {
        {"one to four bytes", "a\xC3\xA9\xE5\x86\x99\xF0\x9F\x93\xB7", L"a\u00E9\u5199\U0001F4F7", true},
        {"null character", std::string("a\0b", 3), std::wstring(L"a\0b", 3), true},
        {"Latin-1", "caf\xE9\"", L"caf\uFFFD\"", false},
        {"encoded surrogate", "\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.whole, IsUtf8(c.bytes));
        EXPECT_EQ(c.wide, FromUtf8(c.bytes));
        EXPECT_EQ(c.whole, c.bytes == ToUtf8(c.wide));
    }
    EXPECT_EQ("\xEF\xBF\xBD\xEF\xBF\xBD", ToUtf8(std::wstring{wchar_t{0xD800}, wchar_t{0x110000}}));
}
