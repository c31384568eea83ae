// Moments as cameras write them.
#include "image/ExifTime.h"

#include <gtest/gtest.h>

#include <cstdint>

using namespace std::string_view_literals;

TEST(ExifTime, Moments)
{
    constexpr std::int64_t START = 1236434703; // 2009-03-07 14:05:03, as date -u tells it
    const struct {
        std::string_view sDate;
        std::string_view sFraction;
        std::int64_t nMicroseconds;
    } cases[] = {
        {"2009:03:07 14:05:03", "", START * 1'000'000},
        {"2009:03:07 14:05:03", "05", START * 1'000'000 + 50'000},
        {"2009:03:07 14:05:03", "70  ", START * 1'000'000 + 700'000},
        {"2009:03:07 14:05:03\0\0"sv, "7\0"sv, START * 1'000'000 + 700'000},
        {"2009:03:07 14:05:03  ", "", START * 1'000'000},
        {"2008:02:29 00:00:00", "", 1204243200LL * 1'000'000},
    };
    for (const auto& c : cases) {
        const auto taken = ParseExifTime(c.sDate, c.sFraction);
        EXPECT_EQ(c.nMicroseconds, taken ? taken->count() : -1) << c.sDate << "." << c.sFraction;
    }
}

TEST(ExifTime, NoMoments)
{
    for (const std::string_view sDate :
         {""sv, "                   "sv, "0000:00:00 00:00:00"sv, "    :  :     :  :  "sv,
          "2009:13:07 14:05:03"sv, "2009:02:29 14:05:03"sv, "2009:03:07 24:00:00"sv, "2009:03:07 14:60:03"sv,
          "2009:03:07 14:05:61"sv, "2009:03:07"sv, "2009-03-07 14:05:03"sv, "2009:03:07T14:05:03"sv,
          "2009:03:07 14:05:03+01"sv, "2009:03:07 14:05:-3"sv})
        EXPECT_FALSE(ParseExifTime(sDate, "")) << sDate;
}
