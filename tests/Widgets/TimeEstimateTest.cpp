// The times of a progress dialog.
#include "Widgets/TimeEstimate.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

using namespace LS::Widgets;

TEST(TimeText, HoursMinutesSeconds)
{
    const struct {
        std::uint32_t nSeconds;
        const char* szText;
    } cases[] = {
        {0, "0:00:00"},
        {59, "0:00:59"},
        {60, "0:01:00"},
        {3599, "0:59:59"},
        {3600, "1:00:00"},
        {100 * 3600 + 61, "100:01:01"},
        {UNKNOWN_TIME, "Unknown"},
        {UNKNOWN_TIME - 1, "1193046:28:14"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.szText, TimeText(c.nSeconds).ToStdString());
}

TEST(SecondsBetween, NeverRunsBackwards)
{
    EXPECT_EQ(5U, SecondsBetween(10, 15));
    EXPECT_EQ(0U, SecondsBetween(15, 10));
}

TEST(GaugeFactor, KeepsTheRangeWithin16Bits)
{
    const struct {
        std::int32_t nMaximum, nFactor, nRange;
    } cases[] = {
        {0, 1, 0},
        {1, 1, 1},
        {100, 1, 100},
        {65535, 1, 65535},
        {65536, 2, 32768},
        {70000, 2, 35000},
        {std::numeric_limits<std::int32_t>::max(), 32768, 65535},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.nMaximum);
        EXPECT_EQ(c.nFactor, GaugeFactor(c.nMaximum));
        EXPECT_EQ(c.nRange, c.nMaximum / GaugeFactor(c.nMaximum));
    }
}

namespace {

struct Step {
    std::uint32_t nElapsed;
    std::int32_t nValue; ///< of 100
    std::uint32_t nEstimated, nRemaining;
    std::uint32_t nStopped = 0;
};

} // namespace

TEST(TimeEstimate, MovesWhenConfirmed)
{
    const struct {
        const char* name;
        std::vector<Step> steps;
    } cases[] = {
        {"the first three seconds follow each report",
         {{0, 10, 0, 0}, {1, 10, 10, 9}, {2, 10, 20, 18}, {3, 10, 30, 27}}},
        {"three rises in a row",
         {{3, 10, 30, 27}, {4, 10, 30, 26}, {5, 10, 30, 25}, {6, 10, 60, 54}, {7, 10, 60, 53}}},
        {"three falls in a row", {{3, 10, 30, 27}, {4, 20, 30, 26}, {5, 25, 30, 25}, {6, 30, 20, 14}}},
        {"a rise between falls begins the count anew",
         {{3, 10, 30, 27},
          {4, 20, 30, 26},
          {5, 25, 30, 25},
          {6, 10, 30, 24},
          {7, 35, 30, 23},
          {8, 40, 30, 22},
          {9, 45, 20, 11}}},
        {"one report a second counts",
         {{3, 10, 30, 27}, {4, 20, 30, 26}, {4, 21, 30, 26}, {4, 22, 30, 26}, {5, 25, 30, 25}}},
        {"an overdue job moves at once", {{3, 100, 3, 0}, {4, 50, 8, 4}}},
        {"overdue within one second", {{3, 50, 6, 3}, {4, 50, 6, 2}, {4, 50, 6, 2}}},
        {"the last report counts even within one second", {{3, 10, 30, 27}, {3, 100, 3, 0}}},
        {"truncated", {{1, 30, 3, 2}}},
        {"the time stopped comes on top", {{2, 50, 4, 2}, {12, 50, 14, 2, 10}}},
        {"stopped longer than elapsed, the clock was set back", {{2, 10, 0, 0, 4}}},
        {"longer than can be counted",
         {{100000000, 1, UNKNOWN_TIME, UNKNOWN_TIME}, {100000001, 100, 100000001, 0}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        TimeEstimate estimate;
        for (const Step& step : c.steps) {
            estimate.Report(step.nElapsed, step.nStopped, step.nValue, 100);
            EXPECT_EQ(step.nEstimated, estimate.Estimated()) << "after " << step.nElapsed << " s";
            EXPECT_EQ(step.nRemaining, estimate.Remaining(step.nElapsed))
                << "after " << step.nElapsed << " s";
        }
    }
}

TEST(TimeEstimate, ShowsAnExpectedRiseAtOnce)
{
    TimeEstimate estimate;
    estimate.Report(3, 0, 10, 100);
    estimate.Report(4, 0, 10, 100);
    EXPECT_EQ(30U, estimate.Estimated());
    estimate.ExpectRise();
    estimate.Report(15, 10, 10, 100);
    EXPECT_EQ(60U, estimate.Estimated());
}
