// Each system call and each allocation of a merge fails once, and once for good: nothing is damaged.
#include "tests/faults/FaultyProgram.h"
#include "tests/faults/Form.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace LS::Tests;

namespace {

/// How many positions of a sweep are tried; the others lie between them.
struct Sweep {
    const char* szKind;
    int nShort, nLong; ///< runs at most, in each form
};

class FailingCalls : public FaultyProgram, public testing::WithParamInterface<Sweep> {
protected:
    RunOptions Orders(long nCall, bool bLasting) const
    {
        RunOptions options;
        options.environment = {
            "LD_PRELOAD=" LS_FAILING_SYSTEM, std::string("LS_FAULT_CALL=") + GetParam().szKind,
            "LS_FAULT_NTH=" + std::to_string(nCall), "LS_FAULT_MARK=" + m_mark.File("met")};
        if (bLasting)
            options.environment.emplace_back("LS_FAULT_LASTING=1");
        return options;
    }

    /// @return whether the call that was to fail came at all
    bool Run(const std::vector<std::string>& vsOutputs, long nCall, bool bLasting)
    {
        SCOPED_TRACE(testing::Message()
                     << GetParam().szKind << " " << nCall << (bLasting ? " and all after" : ""));
        PutOlderFiles(vsOutputs);
        const ProgramRun run = MergeWith({"--curve", "standard"}, vsOutputs, Orders(nCall, bLasting));
        ExpectCleanOutcome(run, vsOutputs);
        const bool bMet = std::filesystem::remove(m_mark.File("met"));
        EXPECT_TRUE(bMet || run.code == 0) << run.err;
        return bMet;
    }

    /// How many such calls an untroubled run makes.
    long Calls(const std::vector<std::string>& vsOutputs)
    {
        long nLow = 1, nHigh = 1; // the last that is met, the first that isn't
        while (Run(vsOutputs, nHigh, false))
            nHigh = 2 * (nLow = nHigh);
        while (nHigh - nLow > 1) {
            const long nMiddle = nLow + (nHigh - nLow) / 2;
            (Run(vsOutputs, nMiddle, false) ? nLow : nHigh) = nMiddle;
        }
        return nLow;
    }

    TempFolder m_mark;
};

INSTANTIATE_TEST_SUITE_P(, FailingCalls,
                         testing::Values(Sweep{"write", 60, 1000}, Sweep{"close", 60, 1000},
                                         Sweep{"fsync", 20, 20}, Sweep{"mmap", 10, 10},
                                         Sweep{"rename", 20, 20}, Sweep{"malloc", 120, 50000}),
                         [](const auto& sweep) { return std::string(sweep.param.szKind); });

} // namespace

TEST_P(FailingCalls, DamageNothing)
{
    for (const auto& vsOutputs : AllOutputs()) {
        const long nCalls = Calls(vsOutputs);
        const long nRuns = InForm(GetParam().nShort, GetParam().nLong) / 2;
        const long nStep = nCalls / nRuns + 1;
        for (long nCall = 1; nCall <= nCalls && !HasFailure(); nCall += nStep)
            for (const bool bLasting : {false, true})
                EXPECT_TRUE(Run(vsOutputs, nCall, bLasting));
        std::printf("%s: %ld calls, each %ld. tried\n", GetParam().szKind, nCalls, nStep);
    }
}
