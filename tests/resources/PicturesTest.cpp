// The embedded pictures: each is there in its size, in both forms, and no two are the same.
#include "resources/Pictures.h"

#include <gtest/gtest.h>
#include <wx/icon.h>

#include <set>
#include <string>

using namespace LS::Resources;

TEST(Pictures, HaveTheirSizesAndNoTwoAreTheSame)
{
    const std::pair<Command, wxSize> commands[] = {
        {Command::New, {26, 26}},      {Command::CreateHDR, {26, 26}}, {Command::Save, {26, 26}},
        {Command::Add, {14, 14}},      {Command::Remove, {14, 14}},    {Command::MoveUp, {12, 13}},
        {Command::MoveDown, {12, 13}},
    };
    std::set<std::string> pictures;
    const auto check = [&pictures](const wxImage& image, wxSize size) {
        EXPECT_EQ(size, image.GetSize());
        pictures.emplace(reinterpret_cast<const char*>(image.GetData()),
                         3 * static_cast<std::size_t>(size.x * size.y));
    };
    for (const auto& [command, size] : commands)
        for (const Form form : {Form::Normal, Form::Disabled})
            for (const int nScale : {1, 2})
                check(CommandPicture(command, form).GetBitmap(size * nScale).ConvertToImage(), size * nScale);
    for (const Hand hand : {Hand::Open, Hand::Gripping})
        check(HandCursor(hand), {32, 32});
    EXPECT_EQ(30U, pictures.size());
    EXPECT_EQ(wxSize(481, 294), SplashPicture().GetDefaultSize());
    for (const int nSize : {16, 24, 32, 48, 64, 128, 256})
        EXPECT_TRUE(ApplicationIcon().GetIcon(wxSize(nSize, nSize), wxIconBundle::FALLBACK_NONE).IsOk());
}
