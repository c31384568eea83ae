// The embedded pictures: each is there in its size, in both forms, and no two are the same.
#include "resources/Pictures.h"

#include "tests/support/Screen.h"

#include <gtest/gtest.h>
#include <wx/cursor.h>
#include <wx/dcmemory.h>
#include <wx/icon.h>

#include <set>
#include <string>

using LS::Resources::Command;
using LS::Resources::Form;
using LS::Resources::Hand;

namespace {

std::string Pixels(const wxImage& image)
{
    return {reinterpret_cast<const char*>(image.GetData()),
            3 * static_cast<std::size_t>(image.GetWidth()) * static_cast<std::size_t>(image.GetHeight())};
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

TEST(CommandPicture, BothFormsFitTheirPlaceAndNoTwoAreTheSame)
{
    const std::pair<Command, wxSize> cases[] = {
        {Command::New, {26, 26}},      {Command::CreateHDR, {26, 26}}, {Command::Save, {26, 26}},
        {Command::Add, {14, 14}},      {Command::Remove, {14, 14}},    {Command::MoveUp, {12, 13}},
        {Command::MoveDown, {12, 13}},
    };
    std::set<std::string> pictures;
    for (const auto& [command, size] : cases)
        for (const Form form : {Form::Normal, Form::Disabled}) {
            ExpectInTwoSizes(CommandPicture(command, form));
            const wxImage image = ImageOf(CommandPicture(command, form));
            EXPECT_EQ(size, image.GetSize());
            EXPECT_TRUE(image.HasMask());
            pictures.insert(Pixels(image));
        }
    EXPECT_EQ(14U, pictures.size());
}

TEST(Pictures, OfTheProgram)
{
    const wxIconBundle icons = LS::Resources::ApplicationIcon();
    EXPECT_EQ(7U, icons.GetIconCount());
    for (const int nSize : {16, 24, 32, 48, 64, 128, 256})
        EXPECT_TRUE(icons.GetIcon(wxSize(nSize, nSize), wxIconBundle::FALLBACK_NONE).IsOk()) << nSize;
    EXPECT_EQ(wxSize(481, 294), LS::Resources::SplashPicture().GetDefaultSize());
    ExpectInTwoSizes(LS::Resources::SplashPicture());

    for (const Hand hand : {Hand::Open, Hand::Gripping}) {
        const wxImage image = HandCursor(hand);
        EXPECT_EQ(wxSize(32, 32), image.GetSize());
        EXPECT_TRUE(image.HasMask() && wxCursor(image).IsOk());
        EXPECT_EQ(16, image.GetOptionInt(wxIMAGE_OPTION_CUR_HOTSPOT_X));
        EXPECT_EQ(16, image.GetOptionInt(wxIMAGE_OPTION_CUR_HOTSPOT_Y));
    }
    EXPECT_NE(Pixels(HandCursor(Hand::Open)), Pixels(HandCursor(Hand::Gripping)));
}
