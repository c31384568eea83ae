// The size of a picture in a window.
#include "Widgets/PictureFit.h"

#include <gtest/gtest.h>

TEST(FittedSize, ShrinksButNeverEnlarges)
{
    const struct {
        const char* name;
        wxSize picture, window, shown;
    } cases[] = {
        {"smaller than the window", {160, 120}, {300, 300}, {160, 120}},
        {"as large as the window", {300, 300}, {300, 300}, {300, 300}},
        {"twice as large", {320, 240}, {160, 160}, {160, 120}},
        {"higher than wide", {100, 400}, {160, 160}, {40, 160}},
        {"larger on one side only", {500, 10}, {250, 100}, {250, 5}},
        {"truncated", {3, 1000}, {100, 999}, {2, 999}},
        {"window without height", {100, 100}, {50, 0}, {50, 50}},
        {"window without width", {100, 100}, {0, 50}, {50, 50}},
        {"no window at all", {100, 100}, {0, 0}, {0, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.shown, FittedSize(c.picture, c.window));
    }
}
