// Runs a check on every instruction set that this machine has.
#pragma once

#include "Util/CpuFeatures.h"

#include <gtest/gtest.h>

namespace LS::Tests {

/// Keeps kernels to an instruction set for the length of a scope.
class InstructionLimit {
public:
    explicit InstructionLimit(LS::Util::InstructionSet limit) { LS::Util::LimitInstructionSet(limit); }
    InstructionLimit(const InstructionLimit&) = delete;
    InstructionLimit& operator=(const InstructionLimit&) = delete;
    ~InstructionLimit() { LS::Util::LimitInstructionSet(LS::Util::InstructionSet::Best); }
};

/// Calls check() once on each set; stops at the first failure that is fatal.
template <typename Check> void OnEveryInstructionSet(Check check)
{
    using LS::Util::InstructionSet;
    for (const InstructionSet set : {InstructionSet::Baseline, InstructionSet::Best}) {
        const InstructionLimit limit(set);
        SCOPED_TRACE(testing::Message() << "instruction set " << static_cast<int>(set));
        check();
        if (testing::Test::HasFatalFailure())
            return;
    }
}

} // namespace LS::Tests
