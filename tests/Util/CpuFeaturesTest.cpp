// The choice of an instruction set: what the processor has, and what a limit keeps out.
#include "Util/CpuFeatures.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

using LS::Util::BestInstructionSet;
using LS::Util::InstructionSet;
using LS::Util::LimitInstructionSet;

namespace {

/// Whether the kernel lists a feature of the first processor.
bool SystemLists(const std::string& sFeature)
{
    std::ifstream cpus("/proc/cpuinfo");
    for (std::string sLine; std::getline(cpus, sLine);) {
        std::istringstream words(sLine);
        std::string sWord;
        words >> sWord;
        if (sWord != "flags")
            continue;
        while (words >> sWord)
            if (sWord == sFeature)
                return true;
        return false;
    }
    return false;
}

} // namespace

TEST(CpuFeatures, AreThoseThatTheSystemLists)
{
    const bool bAvx2 = SystemLists("avx2") && SystemLists("f16c");
    EXPECT_EQ(bAvx2 ? InstructionSet::Avx2 : InstructionSet::Baseline, BestInstructionSet());
}

TEST(CpuFeatures, LimitKeepsTheBetterSetsOutAndCanBeLifted)
{
    const InstructionSet best = BestInstructionSet();
    LimitInstructionSet(InstructionSet::Baseline);
    EXPECT_EQ(InstructionSet::Baseline, BestInstructionSet());
    LimitInstructionSet(InstructionSet::Avx2);
    EXPECT_EQ(best, BestInstructionSet());
}
