// Numbers and fractions as people type them.
#include "Util/Numbers.h"

#include <gtest/gtest.h>

#include <clocale>
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
