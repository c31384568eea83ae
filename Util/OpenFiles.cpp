// How many files the process may have open at once.
#include "Util/OpenFiles.h"

#include <algorithm>
#include <sys/resource.h>

namespace LS::Util {

void AllowManyOpenFiles()
{
    constexpr rlim_t ENOUGH = 16384; // programs that inherit it may still loop over all descriptors
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    const rlim_t nWanted = std::min(limit.rlim_max, ENOUGH);
    if (limit.rlim_cur >= nWanted)
        return;
    limit.rlim_cur = nWanted;
    setrlimit(RLIMIT_NOFILE, &limit); // a refusal shows where the files are opened
}

} // namespace LS::Util
