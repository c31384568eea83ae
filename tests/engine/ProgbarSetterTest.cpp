// Percentages of nested operations on their way to one dialog.
#include "engine/ProgbarSetter.h"

#include "tests/support/RecordingProgress.h"

#include <gtest/gtest.h>

#include <vector>

using LS::Tests::RecordingProgress;

TEST(ProgbarSetter, SubRanges)
{
    const struct {
        std::int32_t min, max, low, high, subMin, subMax;
    } cases[] = {
        {0, 100, 31, 100, 31, 100}, // 1.01 rounds down as a float
        {0, 99, 1, 100, 1, 100},    // one above the parent
        {31, 100, 1, 80, 31, 86},   // 0.7 rounds down, and 56 with it
        {0, 30, 0, 100, 0, 31},     // 0.31 rounds up
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.min << ".." << c.max << " sub " << c.low << ".." << c.high);
        const ProgbarSetter parent(nullptr, 0, c.min, c.max);
        const ProgbarSetter sub(&parent, c.low, c.high);
        EXPECT_EQ(c.subMin, sub.Min());
        EXPECT_EQ(c.subMax, sub.Max());
    }
}

TEST(ProgbarSetter, CallsTheDialogOnlyWhenThePositionGrows)
{
    const struct {
        const char* name;
        std::int32_t min, max;
        std::vector<int> reports, positions;
    } cases[] = {
        {"back and forth", 0, 100, {10, 5, 10, 11}, {10, 11}},
        {"small range", 10, 12, {1, 49, 50, 99, 100}, {10, 11, 12}},
        {"last slice", 97, 99, {100}, {99}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        RecordingProgress dialog;
        ProgbarSetter(nullptr, 0, -1, -1).SetPercent(0); // forget the position of the case before
        ProgbarSetter setter(&dialog, 0, c.min, c.max);
        for (const int nReport : c.reports)
            setter.SetPercent(nReport);
        EXPECT_EQ(c.positions, dialog.Positions());
    }
}

TEST(RowPercent, TruncatesTheShare)
{
    EXPECT_EQ(66, RowPercent(2, 3));
    EXPECT_EQ(28, RowPercent(29, 100)); // 0.29 * 100 lies just below 29
    EXPECT_EQ(99, RowPercent(2'000'000'000, 2'000'000'001));
}
