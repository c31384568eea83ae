// Folders of a name that nobody else has.
#include "Util/UniqueFolder.h"

#include <cstdlib>

namespace LS::Util {

std::string MakeUniqueFolder(const std::string& sPrefix)
{
    constexpr std::size_t LETTERS = 6; // which the call wants to find as so many X
    std::string sPath = sPrefix + std::string(LETTERS, 'X');
    return mkdtemp(sPath.data()) ? sPath : std::string();
}

} // namespace LS::Util
