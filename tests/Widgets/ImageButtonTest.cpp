// What an image button works out without a window: layout, groups and the disabled picture.
#include "Widgets/DisabledPicture.h"
#include "Widgets/ImageButtonLayout.h"
#include "Widgets/RadioGroup.h"

#include <gtest/gtest.h>
#include <string>

using namespace LS::Widgets;

namespace {

constexpr LabelPlace LEFT = LabelPlace::Left, RIGHT = LabelPlace::Right, TOP = LabelPlace::Top,
                     BOTTOM = LabelPlace::Bottom;
const wxSize PICTURE(14, 10), LABEL(30, 12), NONE(0, 0);

ImageButtonParts Parts(LabelPlace place, wxSize picture, wxSize label)
{
    return {place, picture, label, wxSize(3, 5), wxSize(4, 2)};
}

} // namespace

TEST(ImageButtonLayout, BestSize)
{
    const struct {
        const char* name;
        LabelPlace place;
        wxSize picture, label, best;
    } cases[] = {
        {"left", LEFT, PICTURE, LABEL, {55, 20}},
        {"right", RIGHT, PICTURE, LABEL, {55, 20}},
        {"top", TOP, PICTURE, LABEL, {38, 34}},
        {"bottom", BOTTOM, PICTURE, LABEL, {38, 34}},
        {"picture alone", BOTTOM, PICTURE, NONE, {20, 20}},
        {"label alone, left", LEFT, NONE, LABEL, {38, 16}},
        {"label alone", BOTTOM, NONE, LABEL, {38, 16}},
        {"nothing", BOTTOM, NONE, NONE, {0, 0}},
        {"high label", LEFT, PICTURE, {30, 40}, {55, 44}},
        {"wide picture", TOP, {90, 10}, LABEL, {96, 34}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.best, ImageButtonBestSize(Parts(c.place, c.picture, c.label)));
    }
}

TEST(ImageButtonLayout, Positions)
{
    const struct {
        const char* name;
        LabelPlace place;
        wxSize picture, label, area;
        wxPoint picturePos, labelPos;
    } cases[] = {
        {"left", LEFT, PICTURE, LABEL, {100, 60}, {60, 25}, {26, 24}},
        {"right", RIGHT, PICTURE, LABEL, {100, 60}, {25, 25}, {43, 24}},
        {"top", TOP, PICTURE, LABEL, {100, 60}, {43, 32}, {35, 15}},
        {"bottom", BOTTOM, PICTURE, LABEL, {100, 60}, {43, 18}, {35, 33}},
        {"left, too narrow, towards 0", LEFT, PICTURE, LABEL, {20, 20}, {21, 5}, {-13, 4}},
        {"right, too narrow", RIGHT, PICTURE, LABEL, {20, 20}, {-14, 5}, {4, 4}},
        {"top, too low", TOP, PICTURE, LABEL, {30, 11}, {8, 8}, {0, -9}},
        {"picture alone", LEFT, PICTURE, NONE, {101, 61}, {43, 25}, {0, 0}},
        {"label alone", LEFT, NONE, LABEL, {101, 61}, {0, 0}, {35, 24}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto positions = PlaceImageButton(Parts(c.place, c.picture, c.label), c.area);
        EXPECT_EQ(c.picturePos, positions.picture);
        EXPECT_EQ(c.labelPos, positions.label);
    }
}

namespace {

/// A row of buttons as letters: r radio, g first of a group, t toggle, p push.
std::vector<GroupRole> Row(const std::string& sButtons)
{
    std::vector<GroupRole> vRow;
    for (const char c : sButtons)
        vRow.push_back({c == 'p', c == 'g', c == 't'});
    return vRow;
}

/// The row with '!' for the button that is switched on and 'x' for each that it clears.
std::string Cleared(std::string sButtons, std::size_t nButton)
{
    for (const std::size_t i : ButtonsToClear(Row(sButtons), nButton))
        sButtons[i] = 'x';
    sButtons[nButton] = '!';
    return sButtons;
}

} // namespace

TEST(RadioGroup, ClearsItsNeighbours)
{
    const struct {
        const char* szButtons;
        std::size_t nButton;
        const char* szCleared;
    } cases[] = {
        {"r", 0, "!"},           {"rrr", 0, "!xx"},       {"rrr", 1, "x!x"},       {"rrr", 2, "xx!"},
        {"grrgrr", 0, "!xxgrr"}, {"grrgrr", 2, "xx!grr"}, {"grrgrr", 3, "grr!xx"}, {"grrgrr", 5, "grrxx!"},
        {"rgr", 2, "rx!"},       {"rprr", 3, "rpx!"},     {"rrpr", 0, "!xpr"},     {"rpr", 1, "r!r"},
        {"rtrr", 3, "rxx!"},     {"rtr", 0, "!tr"},       {"rrt", 2, "xx!"},       {"ttr", 1, "x!x"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.szCleared, Cleared(c.szButtons, c.nButton)) << c.szButtons;
}

TEST(ChequeredPicture, GivesEverySecondPixelToTheBackground)
{
    wxImage image(3, 2);
    image.SetRGB(wxRect(0, 0, 3, 2), 10, 20, 30);
    image.InitAlpha();
    image.SetAlpha(1, 1, 7);
    const wxImage chequered = ChequeredPicture(image, wxColour(200, 201, 202));

    std::string sPixels;
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 3; ++x)
            sPixels += chequered.GetRed(x, y) == 200 && chequered.GetBlue(x, y) == 202 ? 'b' : '.';
    }
    EXPECT_EQ("b.b"
              ".b.",
              sPixels);
    EXPECT_EQ(7, chequered.GetAlpha(1, 1));
    EXPECT_EQ(10, image.GetRed(0, 0)) << "the picture itself changed";
    EXPECT_FALSE(ChequeredPicture(wxImage(), *wxWHITE).IsOk());
}
