// Texts of number cells, in and out.
#include "Widgets/NumberCell.h"

#include "tests/support/CommaLocale.h"

#include <gtest/gtest.h>

namespace {

void ExpectCellTexts()
{
    const std::optional<wxString> REFUSED;
    const struct {
        const char* name;
        const char* text;
        float min, max;
        std::optional<wxString> shown;
    } cases[] = {
        {"fraction", "1/125", 0.0005F, 16, "0.0080"},
        {"lower limit, rounded up as a float", "1/2000", 0.0005F, 16, "0.0005"},
        {"lower limit as it is typed", "0.0005", 0.0005F, 16, "0.0005"},
        {"below", "0.00049", 0.0005F, 16, REFUSED},
        {"upper limit", "16/1", 0.0005F, 16, "16.0000"},
        {"above", "16.001", 0.0005F, 16, REFUSED},
        {"whole seconds above a limit of 1", "2/1", -1, 1, REFUSED},
        {"negative limit", "-5", -5, 5, "-5.0000"},
        {"below a negative limit", "-5.1", -5, 5, REFUSED},
        {"rounded", "1/3", 0, 1, "0.3333"},
        {"decimal", "0.25", 0, 1, "0.2500"},
        {"comma", "1,4", 1, 64, "1.4000"},
        {"commas in a fraction", "0,5/2,5", 0, 1, "0.2000"},
        {"blanks in front", " 1/ 4", 0, 1, "0.2500"},
        {"blank behind", "1 /4", 0, 1, REFUSED},
        {"plus sign", "+0.5", 0, 1, "0.5000"},
        {"denominator 0", "1/0", -1, 1, REFUSED},
        {"denominator -0", "1/-0", -1, 1, REFUSED},
        {"no denominator", "1/", -1, 1, REFUSED},
        {"no numerator", "/2", -1, 1, REFUSED},
        {"slash alone", "/", -1, 1, REFUSED},
        {"two slashes", "1/2/2", -1, 1, REFUSED},
        {"empty piece in the middle", "1//2", -1, 1, REFUSED},
        {"slash at the end, which is no piece", "1/2/", -1, 1, "0.5000"},
        {"empty", "", -1, 1, REFUSED},
        {"blank", " ", -1, 1, REFUSED},
        {"letters", "abc", -1, 1, REFUSED},
        {"letters behind a number", "0.5s", -1, 1, REFUSED},
        {"not a number", "nan", -1, 1, REFUSED},
        {"infinity", "inf", -1, std::numeric_limits<float>::max(), REFUSED},
        {"quotient too large", "1e300/1e-300", -1, std::numeric_limits<float>::max(), REFUSED},
        {"beyond 32 bits", "1e39", -1, std::numeric_limits<float>::max(), REFUSED},
        {"0 / 0", "0/0", -1, 1, REFUSED},
        {"not ASCII", "\xc2\xbd", -1, 1, REFUSED},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.shown, NumberCellText(wxString::FromUTF8(c.text), c.min, c.max));
    }
}

} // namespace

TEST(NumberCell, TextsInTheCLocale)
{
    ExpectCellTexts();
}

TEST(NumberCell, TextsInALocaleWithCommas)
{
    const LS::Tests::CommaLocale locale;
    ASSERT_TRUE(locale.IsOk());
    ExpectCellTexts();
}
