// A locale that writes numbers with a comma.
#pragma once

#include "tests/support/TempFolder.h"

#include <clocale>
#include <cstdlib>
#include <cstring>

namespace LS::Tests {

/// While it lives the C library speaks French, as after a library's call of setlocale. The locale is made in
/// a private folder by the system's own compiler for them, since a bare system has none.
class CommaLocale {
public:
    CommaLocale()
    {
        const std::string sCommand = "localedef -i fr_FR -f UTF-8 '" + m_folder.File("fr_FR.UTF-8") + "'";
        if (std::system(sCommand.c_str()) == 0) // NOLINT(bugprone-command-processor): our own words
            setenv("LOCPATH", m_folder.Path().c_str(), 1);
        std::setlocale(LC_ALL, "fr_FR.UTF-8");
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale()
    {
        std::setlocale(LC_ALL, "C");
        unsetenv("LOCPATH");
    }

    /// Whether numbers really have a comma now.
    bool IsOk() const { return std::strcmp(std::localeconv()->decimal_point, ",") == 0; }

private:
    TempFolder m_folder;
};

} // namespace LS::Tests
