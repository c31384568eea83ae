// Joins one target to the fuzzer; LS_FUZZ_TARGET names it.
#include "tests/fuzz/Targets.h"

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    LS::Fuzz::PrepareTargets();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nBytes)
{
    return LS::Fuzz::LS_FUZZ_TARGET(pData, nBytes);
}
