// The handle's pictures and arithmetic.
#include "Widgets/SashHandle.h"

#include <gtest/gtest.h>
#include <wx/colour.h>

#include <string>

namespace {

std::string Row(const wxImage& image, int y)
{
    std::string row;
    for (int x = 0; x < image.GetWidth(); ++x)
        row += image.GetRed(x, y) == 255 ? '*' : image.GetBlue(x, y) == 0x9C ? 'd' : '.';
    return row;
}

} // namespace

TEST(SashHandle, ArrowPointsWhereThePaneGoes)
{
    const char* const right[] = {"d.....d", "d.*...d", "d.**..d", "d.***.d", "d.****d",
                                 "d.***.d", "d.**..d", "d.*...d", "d.....d"};
    const char* const left[] = {"d.....d", "d...*.d", "d..**.d", "d.***.d", "d****.d",
                                "d.***.d", "d..**.d", "d...*.d", "d.....d"};
    const wxImage expanded = SashHandleImage(true);
    const wxImage collapsed = SashHandleImage(false);
    ASSERT_EQ(wxSize(7, 63), expanded.GetSize());
    ASSERT_EQ(wxSize(7, 63), collapsed.GetSize());
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(right[i], Row(expanded, 27 + i));
        EXPECT_EQ(left[i], Row(collapsed, 27 + i));
    }
    const wxColour middle(expanded.GetRed(3, 0), expanded.GetGreen(3, 0), expanded.GetBlue(3, 0));
    EXPECT_EQ(wxColour(0x9A, 0xB7, 0xC6), middle);
    EXPECT_EQ(Row(expanded, 0), Row(collapsed, 62));
}

TEST(SashHandle, StandsInTheMiddleOfTheSash)
{
    EXPECT_EQ(wxRect(200, 118, 7, 63), SashHandleRect(200, 300, {7, 63}));
    EXPECT_EQ(wxRect(0, -11, 7, 63), SashHandleRect(0, 40, {7, 63}));
}

TEST(SashHandle, Toggling)
{
    const SashPane open = {true, 110, 0};
    const SashPane closed = {false, 1, 110};
    EXPECT_EQ(closed, Toggled(open));
    EXPECT_EQ((SashPane{true, 110, 110}), Toggled(closed));
    EXPECT_EQ(closed, Toggled(Toggled(closed)));

    EXPECT_TRUE(IsExpandedAfterDrag(2));
    EXPECT_FALSE(IsExpandedAfterDrag(1));
    EXPECT_FALSE(IsExpandedAfterDrag(0));
}

TEST(SashHandle, TrackerLineStaysInside)
{
    const wxSize client(300, 200);
    const struct {
        bool vertical;
        wxPoint pointer, from, to;
    } cases[] = {
        {true, {120, 50}, {120, 2}, {120, 198}}, {true, {-5, 50}, {0, 2}, {0, 198}},
        {true, {301, 50}, {300, 2}, {300, 198}}, {false, {120, 50}, {2, 50}, {298, 50}},
        {false, {120, -1}, {2, 0}, {298, 0}},    {false, {120, 500}, {2, 200}, {298, 200}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(std::pair(c.from, c.to), SashTrackerLine(c.vertical, c.pointer, client));
}
