// The choice of an instruction set: what the processor has, and what a limit keeps out.
#include "Util/CpuFeatures.h"

#include "tests/support/InstructionSets.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace LS::Util;

#ifdef __x86_64__
TEST(CpuFeatures, AreThoseThatTheSystemListsWithinTheLimit)
{
    const std::string sCpus = LS::Tests::ReadText("/proc/cpuinfo");
    const bool bAvx2 = sCpus.find(" avx2 ") != sCpus.npos && sCpus.find(" f16c ") != sCpus.npos;
    EXPECT_EQ(bAvx2, std::string("AVX2") == InstructionSetInUse());
    const LS::Tests::InstructionLimit limit(InstructionSet::Baseline);
    EXPECT_NE(std::string("AVX2"), InstructionSetInUse());
}
#endif
