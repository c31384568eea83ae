// The languages that the program can be set to, under the names that its settings files use.
#pragma once

#include <cstdint>
#include <span>

struct wxLanguageInfo;

/// A language as wxWidgets 2.8 numbers and names it. Later versions number and describe many differently.
struct LanguageRow {
    std::int32_t nNumber;
    const char* szCanonical;   ///< such as "fr_FR", which also names the catalogue; empty or shared for a few
    const char* szDescription; ///< in English, such as "French"; unique
};

/// All of them: numbers 2 to 229, without a gap.
std::span<const LanguageRow> LanguageRows();

/// Null for a number that is none of them.
const LanguageRow* FindLanguageRow(std::int32_t nNumber);

/// What the wxWidgets in use knows of a language: by the canonical name, or by the description for the few
/// whose name is missing or means another language there. Null if it knows nothing.
const wxLanguageInfo* LibraryLanguage(const LanguageRow& row);
