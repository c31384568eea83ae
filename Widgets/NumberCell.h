// The text of a number cell: numbers and fractions in, decimal numbers out, the same in every locale.
#pragma once

#include <wx/string.h>

#include <optional>

/// Reads a number with "." or "," as its decimal point. "nan" and "inf" are no numbers.
std::optional<double> ReadNumber(const wxString& text);

/// Reads a number, or a quotient such as "1/125". Slashes at the end don't count, so "1/2/" is a half.
std::optional<double> ReadNumberOrFraction(const wxString& text);

/// What a cell shows for a text that somebody picked or typed: its value with four decimals.
/// @param min, max  the limits, both included; the value is compared as a 32-bit float, as they are, so that
///                  a decimal limit such as 0.0005 includes its own text
/// @return nothing if the text is no number or its value lies outside the limits
std::optional<wxString> NumberCellText(const wxString& text, float min, float max);

/// How a cell shows its text: a number with this many decimals and a point, anything else as it is.
wxString ShownNumber(const wxString& text, int nDecimals);
