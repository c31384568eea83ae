// Words of the series.
#include "cli/Series.h"

#include <gtest/gtest.h>

TEST(ShutterText, AsPhotographersWriteIt)
{
    const struct {
        float shutter;
        const char* text;
    } cases[] = {
        {1 / 8000.0F, "1/8000 s"}, {1 / 60.0F, "1/60 s"}, {0.0167F, "1/60 s"}, {0.25F, "1/4 s"},
        {1 / 3.0F, "1/3 s"},       {0.3F, "0.3 s"},       {0.5F, "0.5 s"},     {1, "1 s"},
        {2.5F, "2.5 s"},           {30, "30 s"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.text, ShutterText(c.shutter));
}
