// Each system call and each allocation of a merge fails once, and once for good: nothing is damaged.
#include "tests/faults/FaultyProgram.h"
#include "tests/faults/Form.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <ostream>
#include <string_view>

using namespace LS::Tests;

namespace {

/// How many positions of a sweep are tried; the others lie between them.
struct Sweep {
    const char* szKind;
    int nShort, nLong; ///< runs at most, in each form
};

void PrintTo(const Sweep& sweep, std::ostream* pStream)
{
    *pStream << sweep.szKind;
}

constexpr int CRASH = 128 + SIGSEGV;

class FailingCalls : public FaultyProgram, public testing::WithParamInterface<Sweep> {
protected:
    RunOptions Orders(long nCall, bool bLasting) const
    {
        RunOptions options;
        options.environment = {
            "LD_PRELOAD=" LS_FAILING_SYSTEM, std::string("LS_FAULT_CALL=") + GetParam().szKind,
            "LS_FAULT_NTH=" + std::to_string(nCall), "LS_FAULT_MARK=" + m_mark.File("met")};
        if (IsAllocation()) // what fails while the image library starts is beyond us
            options.environment.push_back("LS_FAULT_FROM=" + m_vsImages[0]);
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
        const bool bMet = std::filesystem::remove(m_mark.File("met"));
        if (IsAllocation())
            ExpectOutcomeWithoutMemory(run, vsOutputs);
        else
            ExpectCleanOutcome(run, vsOutputs);
        EXPECT_TRUE(bMet || run.code == 0) << run.err;
        return bMet;
    }

    bool IsAllocation() const { return std::string_view(GetParam().szKind) == "malloc"; }

    /// The image library follows null pointers where its texts find no memory. Then, and where the removing
    /// of the working folder finds none, hidden files stay behind, but nothing bears a name that was asked
    /// for.
    void ExpectOutcomeWithoutMemory(const ProgramRun& run, const std::vector<std::string>& vsOutputs)
    {
        EXPECT_TRUE(IsClearOutcome(run.code) || run.code == CRASH) << run.code << "\n" << run.err;
        ExpectWholeFiles(run, vsOutputs, m_outputs.Path());
        for (const std::string& sName : m_outputs.Names())
            if (sName.starts_with(".lumistrand-"))
                std::filesystem::remove(m_outputs.File(sName));
        EXPECT_EQ(vsOutputs, m_outputs.Names());
        for (const std::string& sName : m_temporary.Names())
            std::filesystem::remove_all(m_temporary.File(sName));
        m_nCrashes += run.code == CRASH;
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
    int m_nCrashes = 0;
};

INSTANTIATE_TEST_SUITE_P(, FailingCalls,
                         testing::Values(Sweep{"write", 60, 1000}, Sweep{"read", 60, 1000},
                                         Sweep{"close", 60, 1000}, Sweep{"fsync", 20, 20},
                                         Sweep{"mmap", 10, 10}, Sweep{"rename", 20, 20},
                                         Sweep{"malloc", 120, 50000}),
                         [](const auto& sweep) { return std::string(sweep.param.szKind); });

} // namespace

TEST_P(FailingCalls, DamageNothing)
{
    int nRuns = 0, nMet = 0;
    for (const auto& vsOutputs : AllOutputs()) {
        RemoveOutputs();
        const long nCalls = Calls(vsOutputs);
        const long nStep = nCalls / (InForm(GetParam().nShort, GetParam().nLong) / 2) + 1;
        for (long nCall = 1; nCall <= nCalls && !HasFailure(); nCall += nStep)
            for (const bool bLasting : {false, true}) {
                nMet += Run(vsOutputs, nCall, bLasting); // the libraries' own calls differ a little
                ++nRuns;
            }
        std::printf("%s: %ld calls, one in %ld tried\n", GetParam().szKind, nCalls, nStep);
    }
    if (IsAllocation())
        std::printf("%d runs, of which %d ended in the image library\n", nRuns, m_nCrashes);
    EXPECT_LE(m_nCrashes, nRuns / 5);
    EXPECT_LE(nRuns * 2 / 3, nMet);
}
