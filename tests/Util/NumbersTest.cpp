// Numbers and fractions as people type them.
#include "Util/Numbers.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>

using namespace LS::Util;

TEST(Numbers, Read)
{
    const std::optional<double> none;
    const struct {
        const char* text;
        std::optional<double> fraction, typed; // what each of the two readers makes of it
    } cases[] = {
        {"0.25", 0.25, 0.25},         {"1e-3", 0.001, 0.001},     {"1/125", 1.0 / 125, none},
        {"-1.5/3", -0.5, none},       {"-1,5e-3", none, -0.0015}, {" \t2", none, 2.0},
        {" +2", none, 2.0},           {"", none, none},           {"+-2", none, none},
        {"2 ", none, none},           {"1.000,5", none, none},    {"1/", none, none},
        {"/2", none, none},           {"1/2/3", none, none},      {"1/-0", none, none},
        {"1e300/1e-300", none, none}, {"1e999", none, none},      {"-inf/1", none, none},
        {"0x10", none, none},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(c.fraction, ParseFraction(c.text));
        EXPECT_EQ(c.typed, ParseTypedNumber(c.text));
    }
}

TEST(Numbers, Fixed)
{
    EXPECT_EQ("0.0080", FormatFixed(1.0 / 125, 4));
    EXPECT_EQ("-0.0000", FormatFixed(-0.00001, 4));
    EXPECT_EQ("0.2", FormatFixed(0.25, 1)) << "rounds to even";
    EXPECT_EQ("-14.000000", FormatFixed(-14, 6));
    EXPECT_EQ(309U + 1 + 6 + 1, FormatFixed(std::numeric_limits<double>::lowest(), 6).size());
}
