// Proposed paths, link texts, and what becomes of typed names.
#include "Widgets/SaveProposal.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

TEST(SaveProposal, ProposedPath)
{
    const struct {
        const char* szFolder;
        unsigned nNumber;
        const char* szFormat;
        const char* szExpected;
    } cases[] = {
        {"/out/", 0, "JPEG Image Format (*.jpeg;*.jpg)", "/out/pano0.jpg"},
        {"/out/", 12, "Portable Network Graphics (*.png)", "/out/pano12.png"},
        {"/out/", 1, "Tiff Image Format (*.tiff;*.tif)", "/out/pano1.tiff"},
        {"/out/", 1, "Windows Bitmap (*.bmp)", "/out/pano1.bmp"},
        {"/out/", 1, "Targa Files (*.tga)", "/out/pano1.tga"},
        {"/out/", 1, "jpeg image format (*.jpeg;*.jpg)", "/out/pano1"},
        {"/%s%n/", 4294967295U, "", "/%s%n/pano4294967295"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.szExpected, ProposedPath(c.szFolder, c.nNumber, c.szFormat));
}

TEST(SaveProposal, LinkText)
{
    const struct {
        SaveOption option;
        LinkMoment moment;
        const char* szExpected;
    } cases[] = {
        {SaveOption::Quality, LinkMoment::Opened, "Quality:8%"},
        {SaveOption::Quality, LinkMoment::Confirmed, "Quality:8%"},
        {SaveOption::BitDepth, LinkMoment::Opened, "Quality:8Bits"},
        {SaveOption::BitDepth, LinkMoment::Confirmed, "Quality:8 Bits"},
        {SaveOption::None, LinkMoment::Opened, ""},
        {SaveOption::None, LinkMoment::Confirmed, ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.szExpected, LinkText(c.option, 8, c.moment));
}

TEST(SaveProposal, NamesAndTheirExtensions)
{
    const struct {
        const wchar_t* sName;
        int nStem;              // -1: no extension
        const wchar_t* sAsJpeg; // null: no name for a file
    } cases[] = {
        {L"holiday", -1, L"holiday.jpg"},
        {L"holiday.jpeg", 7, L"holiday.jpg"},
        {L"holiday.JPG", 7, L"holiday.jpg"},
        {L"holiday.png", 7, L"holiday.jpg"},
        {L"holiday.old", 7, L"holiday.jpg"},
        {L"a.b.c", 3, L"a.b.jpg"},
        {L"a.", 1, L"a.jpg"},
        {L"a..", 2, L"a..jpg"},
        {L"\u00E9t\u00E9 \u590F.x", 5, L"\u00E9t\u00E9 \u590F.jpg"},
        {L"%s%n", -1, L"%s%n.jpg"},
        {L"", -1, nullptr},
        {L".jpg", 0, nullptr},
        {L".hidden.jpg", 7, nullptr},
        {L"..", 1, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(wxString(c.sName).utf8_string());
        EXPECT_EQ(c.sAsJpeg != nullptr, IsFileName(c.sName));
        const auto nStem = StemLength(c.sName);
        EXPECT_EQ(c.nStem, nStem ? static_cast<int>(*nStem) : -1);
        if (c.sAsJpeg) {
            EXPECT_EQ(wxString(c.sAsJpeg), WithExtension(c.sName, "jpg"));
        }
    }
}

TEST(SaveProposal, ExcludedCharactersAreNoName)
{
    for (const char cExcluded : std::string("*?\\/:\"<>|"))
        for (const char* szName : {"#a", "a#", "a#b.jpg", "a.j#pg"}) {
            std::string sName = szName;
            std::replace(sName.begin(), sName.end(), '#', cExcluded);
            EXPECT_FALSE(IsFileName(sName)) << sName;
        }
}

TEST(SaveProposal, ExtensionOfAPath)
{
    const struct {
        const char* szPath;
        const char* szExpected;
    } cases[] = {
        {"/a.b/pano0.tiff", "/a.b/pano0.tif"},
        {"/a.b/pano0", "/a.b/pano0.tif"},
        {"pano0.jpg", "pano0.tif"},
        {"/a//b/./pano0.x", "/a//b/./pano0.tif"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.szExpected, WithExtension(c.szPath, "tif"));
}

TEST(SaveProposal, OnlyNamesWithoutExtensionGetOne)
{
    const struct {
        const char* szPath;
        const char* szExpected;
    } cases[] = {
        {"/out.d/room", "/out.d/room.exr"},   {"/out/room.", "/out/room.exr"},
        {"/out/.hidden", "/out/.hidden.exr"}, {"/out/room.hdr", "/out/room.hdr"},
        {"/out/room.v2", "/out/room.v2"},     {"/out/.hidden.x", "/out/.hidden.x"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.szExpected, WithSomeExtension(c.szPath, "exr"));
}

} // namespace
