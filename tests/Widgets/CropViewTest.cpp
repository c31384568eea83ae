// The crop of the compare views: where it starts, and where a drag takes it.
#include "Widgets/CropView.h"

#include <gtest/gtest.h>

TEST(CropView, StartsInTheMiddle)
{
    const struct {
        const char* name;
        wxSize picture;
        wxRect crop;
    } cases[] = {
        {"larger both ways", {400, 300}, {110, 60, 180, 180}},
        {"odd rest", {401, 183}, {110, 1, 180, 180}},
        {"one pixel larger", {181, 181}, {0, 0, 180, 180}},
        {"as large as a view", {180, 180}, {0, 0, 180, 180}},
        {"narrower", {100, 300}, {0, 60, 100, 180}},
        {"lower", {300, 179}, {60, 0, 180, 179}},
        {"a single pixel", {1, 1}, {0, 0, 1, 1}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.crop, CentredCrop(c.picture));
    }
}

TEST(CropView, FollowsTheHandInsideThePicture)
{
    const struct {
        const char* name;
        wxPoint origin, from, to;
        wxSize picture;
        wxPoint moved;
    } cases[] = {
        {"hand to the right and down", {110, 60}, {90, 90}, {100, 95}, {400, 300}, {100, 55}},
        {"hand to the left and up", {110, 60}, {90, 90}, {80, 70}, {400, 300}, {120, 80}},
        {"no motion", {110, 60}, {90, 90}, {90, 90}, {400, 300}, {110, 60}},
        {"onto the first column and row", {110, 60}, {0, 0}, {110, 60}, {400, 300}, {0, 0}},
        {"over them: dropped, not shortened", {110, 60}, {0, 0}, {111, 61}, {400, 300}, {110, 60}},
        {"onto the last column and row", {110, 60}, {110, 60}, {0, 0}, {400, 300}, {220, 120}},
        {"over them", {110, 60}, {111, 61}, {0, 0}, {400, 300}, {110, 60}},
        {"over one edge only", {110, 60}, {0, 0}, {111, 7}, {400, 300}, {110, 53}},
        {"picture narrower than a view", {0, 60}, {90, 90}, {91, 91}, {100, 300}, {0, 59}},
        {"picture as wide as a view", {0, 60}, {90, 90}, {89, 91}, {180, 300}, {0, 59}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.moved, DraggedOrigin(c.origin, c.from, c.to, c.picture));
        // At scale 2 every length is twice as large.
        EXPECT_EQ(c.moved * 2,
                  DraggedOrigin(c.origin * 2, c.from * 2, c.to * 2, c.picture * 2, 2 * VIEW_SIDE));
    }
}
