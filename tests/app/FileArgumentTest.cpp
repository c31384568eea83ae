// Paths out of a file argument.
#include "app/FileArgument.h"

#include <gtest/gtest.h>

TEST(FileArgument, Paths)
{
    const struct {
        const wchar_t *argument, *paths; ///< the paths in brackets
    } cases[] = {
        {L"", L""},
        {L"a.jpg", L""},
        {L"x|", L""},
        {L"|", L""},
        {L"x|a.jpg", L"[a.jpg]"},
        {L"|a.jpg", L"[a.jpg]"},
        {L"x|a.jpg|b.jpg", L"[a.jpg][b.jpg]"},
        {L"x|a.jpg|", L"[a.jpg]"},
        {L"x|a.jpg||b.jpg", L"[a.jpg][][b.jpg]"},
        {L"x||b.jpg", L"[][b.jpg]"},
        {L"two words|a b.jpg| c", L"[a b.jpg][ c]"},
        {L"x|/%s/\u5c71.jpg", L"[/%s/\u5c71.jpg]"},
    };
    for (const auto& c : cases) {
        wxString sFound;
        for (const wxString& sPath : PathsOfFileArgument(c.argument))
            sFound += "[" + sPath + "]";
        EXPECT_EQ(c.paths, sFound) << c.argument;
    }
}
