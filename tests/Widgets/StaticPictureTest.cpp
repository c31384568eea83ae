// The picture control on the screen.
#include "Widgets/StaticPicture.h"

#include "tests/support/Gui.h"

#include <gtest/gtest.h>
#include <wx/frame.h>

using namespace LS::Tests;
using LS::Widgets::lsStaticPicture;

namespace {

const wxColour RED(255, 0, 0);

wxImage RedImage(int width, int height)
{
    wxImage image(width, height);
    image.SetRGB(wxRect(0, 0, width, height), 255, 0, 0);
    return image;
}

// Where a window shows red: the bounds of all its red pixels.
wxRect RedArea(wxWindow& window)
{
    Pump(20);
    const wxImage shown = Screenshot(window);
    wxRect area;
    for (int y = 0; y < shown.GetHeight(); ++y)
        for (int x = 0; x < shown.GetWidth(); ++x)
            if (RED == wxColour(shown.GetRed(x, y), shown.GetGreen(x, y), shown.GetBlue(x, y)))
                area.Union(wxRect(x, y, 1, 1));
    return area;
}

} // namespace

TEST(StaticPicture, ShrinksAndCentres)
{
    wxFrame frame(nullptr, wxID_ANY, "picture", wxDefaultPosition, {400, 300});
    auto* const picture =
        new lsStaticPicture(&frame, wxID_STATIC, wxNullBitmap, {20, 20}, {160, 160}, wxBORDER_NONE);
    // A second child keeps the frame from stretching its only one.
    new lsStaticPicture(&frame, wxID_STATIC, wxNullBitmap, {300, 20}, {10, 10}, wxBORDER_NONE);
    ShowAndWait(frame);
    ASSERT_EQ(wxSize(160, 160), picture->GetClientSize());
    EXPECT_TRUE(RedArea(*picture).IsEmpty());

    const struct {
        const char* name;
        wxSize image;
        wxRect shown;
    } cases[] = {
        {"small", {40, 20}, {60, 70, 40, 20}},
        {"odd room", {41, 21}, {59, 69, 41, 21}},
        {"as large as the control", {160, 160}, {0, 0, 160, 160}},
        {"large", {320, 240}, {0, 20, 160, 120}},
        {"wide only", {320, 40}, {0, 70, 160, 20}},
        {"a hair that vanishes", {1000, 1}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const wxImage image = RedImage(c.image.x, c.image.y);
        picture->SetImage(&image);
        EXPECT_EQ(c.shown, RedArea(*picture));
    }

    const wxImage image = RedImage(20, 20);
    const wxImage invalid;
    for (const wxImage* const nothing : {static_cast<const wxImage*>(nullptr), &invalid}) {
        picture->SetImage(&image);
        picture->SetImage(nothing);
        EXPECT_TRUE(RedArea(*picture).IsEmpty());
    }
    EXPECT_FALSE(picture->AcceptsFocus());
}

TEST(StaticPicture, TakesTheSizeOfItsBitmap)
{
    wxFrame frame(nullptr, wxID_ANY, "picture");
    const wxBitmap bitmap(RedImage(50, 30));
    const auto size = [&](wxSize given, const wxBitmap& first) {
        return (new lsStaticPicture(&frame, wxID_STATIC, first, {}, given))->GetSize();
    };
    EXPECT_EQ(wxSize(50, 30), size(wxDefaultSize, bitmap));
    EXPECT_EQ(wxSize(80, 30), size({80, -1}, bitmap));
    EXPECT_EQ(wxSize(50, 90), size({-1, 90}, bitmap));
    EXPECT_EQ(wxSize(160, 160), size({160, 160}, wxNullBitmap));
}

TEST(StaticPicture, ShowsItsFirstBitmapMasked)
{
    wxFrame frame(nullptr, wxID_ANY, "picture", wxDefaultPosition, {400, 300});
    wxImage image = RedImage(30, 30);
    image.SetRGB(wxRect(0, 0, 10, 30), 0, 255, 0);
    image.SetMaskColour(0, 255, 0);
    auto* const picture = new lsStaticPicture;
    ASSERT_TRUE(picture->Create(&frame, wxID_STATIC, wxBitmap(image), {20, 20}, {50, 30}, wxBORDER_NONE));
    new lsStaticPicture(&frame, wxID_STATIC, wxNullBitmap, {300, 20}, {10, 10}, wxBORDER_NONE);
    ShowAndWait(frame);
    EXPECT_EQ(wxRect(20, 0, 20, 30), RedArea(*picture));
    EXPECT_NE(255, Screenshot(*picture).GetGreen(12, 5) - Screenshot(*picture).GetRed(12, 5));
}
