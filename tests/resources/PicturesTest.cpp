// The embedded pictures: sizes, colours, transparency, and that they are legible where they are shown.
#include "resources/Pictures.h"

#include "tests/support/Screen.h"

#include <gtest/gtest.h>
#include <wx/cursor.h>
#include <wx/dcmemory.h>
#include <wx/icon.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

using LS::Resources::Command;
using LS::Resources::Form;
using LS::Resources::Hand;

namespace {

using Colour = std::array<int, 3>;

/// The pixels that aren't masked, from the top, and where they are.
struct Opaque {
    std::vector<Colour> colours;
    std::vector<wxPoint> places;
};

Colour ColourAt(const wxImage& image, int x, int y)
{
    return {image.GetRed(x, y), image.GetGreen(x, y), image.GetBlue(x, y)};
}

Opaque OpaquePixels(const wxImage& image)
{
    const Colour mask = {image.GetMaskRed(), image.GetMaskGreen(), image.GetMaskBlue()};
    Opaque opaque;
    for (int y = 0; y < image.GetHeight(); ++y)
        for (int x = 0; x < image.GetWidth(); ++x)
            if (!image.HasMask() || ColourAt(image, x, y) != mask) {
                opaque.colours.push_back(ColourAt(image, x, y));
                opaque.places.emplace_back(x, y);
            }
    return opaque;
}

int Luminance(const Colour& colour)
{
    return (299 * colour[0] + 587 * colour[1] + 114 * colour[2]) / 1000;
}

bool IsGrey(const Colour& colour)
{
    return colour[0] == colour[1] && colour[1] == colour[2];
}

/// The part of the pixels that stand out from a background, in percent.
int PercentApart(const std::vector<Colour>& colours, int nBackground)
{
    constexpr int APART = 40;
    const auto nApart = std::ranges::count_if(
        colours, [&](const Colour& colour) { return std::abs(Luminance(colour) - nBackground) >= APART; });
    return static_cast<int>(100 * nApart / static_cast<int>(colours.size()));
}

int DarkestLuminance(const wxImage& image, const wxRect& area)
{
    int nDarkest = 255;
    for (int y = area.GetTop(); y <= area.GetBottom(); ++y)
        for (int x = area.GetLeft(); x <= area.GetRight(); ++x)
            nDarkest = std::min(nDarkest, Luminance(ColourAt(image, x, y)));
    return nDarkest;
}

wxImage ImageOf(const wxBitmapBundle& picture, int nScale = 1)
{
    return picture.GetBitmap(picture.GetDefaultSize() * nScale).ConvertToImage();
}

/// What stands for a picture at scale 2 is the same with four times the pixels.
void ExpectInTwoSizes(const wxBitmapBundle& picture)
{
    const auto onGrey = [&](int nScale) {
        const wxSize size = picture.GetDefaultSize() * nScale;
        wxBitmap canvas(size, 24);
        wxMemoryDC dc(canvas);
        dc.SetBackground(wxColour(128, 128, 128));
        dc.Clear();
        dc.DrawBitmap(wxBitmap(ImageOf(picture, nScale)), 0, 0, true);
        dc.SelectObject(wxNullBitmap);
        return canvas.ConvertToImage();
    };
    const wxImage single = onGrey(1), doubled = onGrey(2);
    const double dDifference =
        LS::Tests::MeanDifference(single.Scale(doubled.GetWidth(), doubled.GetHeight()), doubled);
    EXPECT_LT(dDifference, 12);
}

} // namespace

TEST(CommandPicture, BothFormsFitTheirPlaceAndAreLegible)
{
    constexpr int LIGHT_THEME = 245, DARK_THEME = 53; // luminance of the usual window backgrounds
    const struct {
        const char* name;
        Command command;
        wxSize size;
    } cases[] = {
        {"new", Command::New, {26, 26}},
        {"create", Command::CreateHDR, {26, 26}},
        {"save", Command::Save, {26, 26}},
        {"add", Command::Add, {14, 14}},
        {"remove", Command::Remove, {14, 14}},
        {"move up", Command::MoveUp, {12, 13}},
        {"move down", Command::MoveDown, {12, 13}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const wxImage normal = ImageOf(CommandPicture(c.command));
        const wxImage disabled = ImageOf(CommandPicture(c.command, Form::Disabled));
        for (const Form form : {Form::Normal, Form::Disabled})
            ExpectInTwoSizes(CommandPicture(c.command, form));
        EXPECT_EQ(c.size, normal.GetSize());
        EXPECT_EQ(c.size, disabled.GetSize());
        EXPECT_TRUE(normal.HasMask() && disabled.HasMask());

        const Opaque coloured = OpaquePixels(normal), grey = OpaquePixels(disabled);
        EXPECT_EQ(coloured.places, grey.places);
        EXPECT_FALSE(std::ranges::all_of(coloured.colours, IsGrey));
        EXPECT_TRUE(std::ranges::all_of(grey.colours, IsGrey));
        for (const int nBackground : {LIGHT_THEME, DARK_THEME}) {
            EXPECT_GE(PercentApart(coloured.colours, nBackground), 40) << nBackground;
            EXPECT_GE(PercentApart(grey.colours, nBackground), 80) << nBackground;
        }
    }
}

TEST(CommandPicture, NoTwoAreTheSame)
{
    std::set<std::string> pictures;
    for (const Command command : {Command::New, Command::CreateHDR, Command::Save, Command::Add,
                                  Command::Remove, Command::MoveUp, Command::MoveDown}) {
        for (const Form form : {Form::Normal, Form::Disabled}) {
            const wxImage image = ImageOf(CommandPicture(command, form));
            pictures.emplace(reinterpret_cast<const char*>(image.GetData()),
                             3U * static_cast<unsigned>(image.GetWidth() * image.GetHeight()));
        }
    }
    EXPECT_EQ(14U, pictures.size());
}

TEST(ApplicationIcon, HasEverySizeWithSoftCorners)
{
    const wxIconBundle icons = LS::Resources::ApplicationIcon();
    EXPECT_EQ(7U, icons.GetIconCount());
    for (const int nSize : {16, 24, 32, 48, 64, 128, 256}) {
        SCOPED_TRACE(nSize);
        const wxIcon icon = icons.GetIcon(wxSize(nSize, nSize), wxIconBundle::FALLBACK_NONE);
        ASSERT_TRUE(icon.IsOk());
        wxBitmap bitmap;
        bitmap.CopyFromIcon(icon);
        const wxImage image = bitmap.ConvertToImage();
        ASSERT_TRUE(image.HasAlpha());
        EXPECT_LT(image.GetAlpha(0, 0), 128);
        EXPECT_LT(image.GetAlpha(nSize - 1, nSize - 1), 128);
        EXPECT_EQ(255, image.GetAlpha(nSize / 2, nSize / 2));
    }
}

TEST(SplashPicture, IsLightWhereTextIsDrawn)
{
    ExpectInTwoSizes(LS::Resources::SplashPicture());
    const wxImage image = ImageOf(LS::Resources::SplashPicture());
    ASSERT_EQ(wxSize(481, 294), image.GetSize());
    EXPECT_EQ(236U, image.CountColours());
    EXPECT_GE(DarkestLuminance(image, {170, 80, 150, 150}), 200);
    EXPECT_GE(DarkestLuminance(image, {270, 68, 180, 20}), 200);
}

TEST(HandCursor, HasFiveColoursAndItsHotSpotInTheMiddle)
{
    const std::set<Colour> expected = {{0, 0, 0}, {255, 255, 255}, {0xC6, 0xC6, 0xC6}, {0x84, 0x84, 0x84}};
    for (const Hand hand : {Hand::Open, Hand::Gripping}) {
        SCOPED_TRACE(hand == Hand::Open ? "open" : "gripping");
        const wxImage image = HandCursor(hand);
        ASSERT_EQ(wxSize(32, 32), image.GetSize());
        ASSERT_TRUE(image.HasMask());
        const Opaque opaque = OpaquePixels(image);
        EXPECT_LT(opaque.places.size(), 32U * 32U);
        EXPECT_EQ(expected, std::set<Colour>(opaque.colours.begin(), opaque.colours.end()));
        EXPECT_EQ(16, image.GetOptionInt(wxIMAGE_OPTION_CUR_HOTSPOT_X));
        EXPECT_EQ(16, image.GetOptionInt(wxIMAGE_OPTION_CUR_HOTSPOT_Y));
        EXPECT_TRUE(wxCursor(image).IsOk());
    }
    EXPECT_NE(OpaquePixels(HandCursor(Hand::Open)).places, OpaquePixels(HandCursor(Hand::Gripping)).places);
}
