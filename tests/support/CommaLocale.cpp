// Makes a locale with the system's own compiler for them.
#include "tests/support/CommaLocale.h"

#include <clocale>
#include <cstdlib>
#include <cstring>

namespace LS::Tests {

CommaLocale::CommaLocale()
{
    const std::string sCommand = "localedef -i fr_FR -f UTF-8 '" + m_folder.File("fr_FR.UTF-8") + "'";
    if (std::system(sCommand.c_str()) != 0) // NOLINT(bugprone-command-processor): our own words
        return;
    setenv("LOCPATH", m_folder.Path().c_str(), 1);
    m_bOk = std::setlocale(LC_ALL, "fr_FR.UTF-8") != nullptr &&
            std::strcmp(std::localeconv()->decimal_point, ",") == 0;
}

CommaLocale::~CommaLocale()
{
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
}

} // namespace LS::Tests
