// The choice of an instruction set: what the processor has, and what a limit keeps out.
#include "Util/CpuFeatures.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace LS::Util;

TEST(CpuFeatures, AreThoseThatTheSystemListsWithinTheLimit)
{
    const std::string sCpus = LS::Tests::ReadText("/proc/cpuinfo");
    const bool bAvx2 = sCpus.find(" avx2 ") != sCpus.npos && sCpus.find(" f16c ") != sCpus.npos;
    const InstructionSet best = bAvx2 ? InstructionSet::Avx2 : InstructionSet::Baseline;
    EXPECT_EQ(best, BestInstructionSet());
    LimitInstructionSet(InstructionSet::Baseline);
    EXPECT_EQ(InstructionSet::Baseline, BestInstructionSet());
    LimitInstructionSet(InstructionSet::Avx2);
    EXPECT_EQ(best, BestInstructionSet());
}
