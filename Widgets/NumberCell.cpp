// Reads and writes numbers without asking the locale.
#include "Widgets/NumberCell.h"

#include "Util/Numbers.h"

#include <wx/tokenzr.h>

#include <cmath>
#include <limits>

std::optional<double> ReadNumber(const wxString& text)
{
    return LS::Util::ParseTypedNumber(text.utf8_string());
}

std::optional<double> ReadNumberOrFraction(const wxString& text)
{
    const wxArrayString pieces = wxStringTokenize(text, "/", wxTOKEN_DEFAULT);
    if (pieces.size() != 2)
        return ReadNumber(text);
    const auto numerator = ReadNumber(pieces[0]);
    const auto denominator = ReadNumber(pieces[1]);
    if (!numerator || !denominator || *denominator == 0)
        return std::nullopt;
    const double dValue = *numerator / *denominator;
    return std::isfinite(dValue) ? std::optional(dValue) : std::nullopt;
}

std::optional<wxString> NumberCellText(const wxString& text, float min, float max)
{
    const auto value = ReadNumberOrFraction(text);
    if (!value || std::abs(*value) > std::numeric_limits<float>::max())
        return std::nullopt;
    const auto rounded = static_cast<float>(*value);
    if (rounded < min || rounded > max)
        return std::nullopt;
    return wxString::FromUTF8(LS::Util::FormatFixed(*value, 4));
}

wxString ShownNumber(const wxString& text, int nDecimals)
{
    const auto value = ReadNumber(text);
    return value ? wxString::FromUTF8(LS::Util::FormatFixed(*value, nDecimals)) : text;
}
