// The texts in which Exif data holds moments.
#include "image/ExifTime.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

using namespace std::chrono;

namespace {

constexpr std::string_view FORM = "0000:00:00 00:00:00";

std::string_view Trimmed(std::string_view sText)
{
    sText = sText.substr(0, sText.find('\0'));
    while (sText.ends_with(' '))
        sText.remove_suffix(1);
    return sText;
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool HasForm(std::string_view sText)
{
    return sText.size() == FORM.size() &&
           std::equal(sText.begin(), sText.end(), FORM.begin(),
                      [](char c, char cForm) { return cForm == '0' ? IsDigit(c) : c == cForm; });
}

int Number(std::string_view sText, std::size_t nStart, std::size_t nDigits)
{
    int nValue = 0;
    std::from_chars(sText.data() + nStart, sText.data() + nStart + nDigits, nValue);
    return nValue;
}

microseconds Fraction(std::string_view sDigits)
{
    if (!std::all_of(sDigits.begin(), sDigits.end(), IsDigit))
        return microseconds{0};
    microseconds fraction{0};
    microseconds digit = 100ms;
    for (const char c : sDigits) {
        fraction += digit * (c - '0');
        digit /= 10;
    }
    return fraction;
}

} // namespace

std::optional<microseconds> ParseExifTime(std::string_view sDate, std::string_view sFraction)
{
    const std::string_view sText = Trimmed(sDate);
    if (!HasForm(sText))
        return std::nullopt;
    const year_month_day date{year{Number(sText, 0, 4)}, month{static_cast<unsigned>(Number(sText, 5, 2))},
                              day{static_cast<unsigned>(Number(sText, 8, 2))}};
    const hours hour{Number(sText, 11, 2)};
    const minutes minute{Number(sText, 14, 2)};
    const seconds second{Number(sText, 17, 2)};
    if (!date.ok() || hour > 23h || minute > 59min || second > 60s) // 60: a leap second
        return std::nullopt;
    return sys_days(date).time_since_epoch() + hour + minute + second + Fraction(Trimmed(sFraction));
}
