// Numbers and fractions as people type them.
#include "Util/Numbers.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>

using namespace LS::Util;

TEST(Numbers, Fractions)
{
    const struct {
        const char* text;
        std::optional<double> value;
    } cases[] = {
        {"1/125", 1.0 / 125},
        {"2/1", 2.0},
        {"-1/4", -0.25},
        {"0/5", 0.0},
        {"1.5/3", 0.5},
        {"0.25", 0.25},
        {"16", 16.0},
        {"1e-3", 0.001},
        {"", std::nullopt},
        {"/", std::nullopt},
        {"1/", std::nullopt},
        {"/2", std::nullopt},
        {"1/2/3", std::nullopt},
        {"1/0", std::nullopt},
        {"1/-0", std::nullopt},
        {"1e300/1e-300", std::nullopt},
        {"1e999", std::nullopt},
        {"nan", std::nullopt},
        {"inf", std::nullopt},
        {"-inf/1", std::nullopt},
        {"1/nan", std::nullopt},
        {"0x10", std::nullopt},
        {" 2", std::nullopt},
        {"2 ", std::nullopt},
        {"2x", std::nullopt},
        {"+2", std::nullopt},
        {"1,5", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(c.value, ParseFraction(c.text));
    }
}

TEST(Numbers, TypedIntoFields)
{
    const struct {
        const char* text;
        std::optional<double> value;
    } cases[] = {
        {"0.25", 0.25},
        {"0,25", 0.25},
        {"-1,5e-3", -0.0015},
        {" \t2", 2.0},
        {"+2", 2.0},
        {" +2", 2.0},
        {"-2", -2.0},
        {"", std::nullopt},
        {" ", std::nullopt},
        {"+", std::nullopt},
        {"+-2", std::nullopt},
        {"++2", std::nullopt},
        {"+ 2", std::nullopt},
        {"2 ", std::nullopt},
        {"1.000,5", std::nullopt},
        {"1,2,3", std::nullopt},
        {"+nan", std::nullopt},
        {" inf", std::nullopt},
        {"0x10", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(c.value, ParseTypedNumber(c.text));
    }
}

TEST(Numbers, Fixed)
{
    const struct {
        double value;
        int decimals;
        const char* text;
    } cases[] = {
        {1.0 / 125, 4, "0.0080"},   {1.0 / 60, 4, "0.0167"}, {16, 4, "16.0000"}, {-0.00001, 4, "-0.0000"},
        {0.016667F, 6, "0.016667"}, {0.25, 1, "0.2"},        {0.75, 1, "0.8"},   {2.5, 0, "2"},
        {-14, 6, "-14.000000"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.text, FormatFixed(c.value, c.decimals));
    EXPECT_EQ(309U + 1 + 6 + 1, FormatFixed(std::numeric_limits<double>::lowest(), 6).size());
}
