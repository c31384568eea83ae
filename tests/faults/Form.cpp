// The two forms of the fault suite: the short one belongs to every run of the tests.
#include "tests/faults/Form.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace LS::Tests {

bool IsLongForm()
{
    const char* const szForm = std::getenv("LS_FAULTS");
    return szForm && std::strcmp(szForm, "long") == 0;
}

int InForm(int nShort, int nLong)
{
    return IsLongForm() ? nLong : nShort;
}

void TellNotTried(const char* szReason)
{
    std::printf("NOT TRIED: %s\n", szReason);
}

} // namespace LS::Tests
