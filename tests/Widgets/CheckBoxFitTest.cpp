// The place of a check box in its cell.
#include "Widgets/CheckBoxFit.h"

#include <gtest/gtest.h>

#include <ostream>

void PrintTo(const wxRect& rect, std::ostream* stream)
{
    *stream << rect.x << ", " << rect.y << ", " << rect.width << " x " << rect.height;
}

TEST(CheckBoxRect, PlacesAndShrinks)
{
    const struct {
        const char* name;
        wxRect cell;
        wxSize best;
        int alignment;
        wxRect box;
    } cases[] = {
        {"centred", {100, 40, 30, 20}, {16, 16}, wxALIGN_CENTRE, {109, 44, 14, 14}},
        {"centred horizontally", {100, 40, 30, 20}, {16, 16}, wxALIGN_CENTRE_HORIZONTAL, {109, 44, 14, 14}},
        {"left", {100, 40, 30, 20}, {16, 16}, wxALIGN_LEFT, {104, 44, 14, 14}},
        {"right", {100, 40, 30, 20}, {16, 16}, wxALIGN_RIGHT, {114, 44, 14, 14}},
        {"another alignment", {100, 40, 30, 20}, {16, 16}, wxALIGN_BOTTOM, {}},
        {"as high as the cell", {0, 0, 30, 16}, {16, 16}, wxALIGN_CENTRE, {10, 3, 12, 12}},
        {"one pixel of room", {0, 0, 30, 17}, {16, 16}, wxALIGN_CENTRE, {9, 2, 14, 14}},
        {"wider than the cell", {0, 0, 12, 20}, {16, 14}, wxALIGN_CENTRE, {3, 7, 8, 8}},
        {"hardly any room", {0, 0, 5, 5}, {16, 16}, wxALIGN_CENTRE, {3, 3, 1, 1}},
        {"no room", {0, 0, 4, 20}, {16, 16}, wxALIGN_CENTRE, {}},
        {"hidden column", {0, 0, 0, 20}, {16, 16}, wxALIGN_CENTRE, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.box, CheckBoxRect(c.cell, c.best, c.alignment));
    }
}
