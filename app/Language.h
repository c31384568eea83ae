// The language of the program's texts, chosen once at the start.
#pragma once

#include <wx/intl.h>
#include <wx/string.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>

class Config;

/// English descriptions of the languages that have a catalogue, and their numbers of app/LanguageTable.h.
using LanguageMap = std::map<wxString, std::int32_t>;

/// What a program that speaks a language holds.
struct LanguageChoice {
    LanguageMap languages;            ///< those that can be chosen
    std::unique_ptr<wxLocale> locale; ///< the one in use; null: the program's own English texts
};

/// The languages whose catalogue, such as "fr_FR.mo", is a file of the folder "Languages" of the program
/// folder.
LanguageMap FindLanguages(const std::wstring& sProgramFolder);

/// Finds the languages and sets the one that the file "lsConfig.xml" of a sibling program names; its name
/// goes into the settings as well. Without that file, or where it is broken, nothing is set.
/// @param sProgramFolder  where catalogues and file are
LanguageChoice LoadLanguage(const std::wstring& sProgramFolder, Config& config);

/// Makes a language the one in use: the process's locale, with numbers still written with a point, and the
/// texts.
/// @param description  in English, such as "French"
/// @return whether its texts are in use now. If not, the log has the reason, unless the language just isn't
/// in
///         the map, where nothing changes. A locale whose catalogue is broken stays set, with English texts
bool SetLanguage(const wxString& description, const std::wstring& sProgramFolder, LanguageChoice& choice);
