// Each system call and each allocation of a merge fails once, and once for good: nothing is damaged.
#include "tests/faults/FaultyProgram.h"
#include "tests/faults/Form.h"

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
    /// @return whether the call that was to fail came at all
    bool MergeWithFault(const Names& outputs, long nCall, bool bLasting)
    {
        const std::string sKind = GetParam().szKind;
        SCOPED_TRACE(testing::Message() << sKind << " " << nCall << (bLasting ? " and all after" : ""));
        RunOptions options;
        options.environment = {"LD_PRELOAD=" LS_FAILING_SYSTEM, "LS_FAULT_CALL=" + sKind,
                               "LS_FAULT_NTH=" + std::to_string(nCall),
                               "LS_FAULT_MARK=" + m_mark.File("met")};
        if (sKind == "malloc") // what fails while the image library starts is beyond us
            options.environment.push_back("LS_FAULT_FROM=" + m_vsImages[0]);
        if (bLasting)
            options.environment.emplace_back("LS_FAULT_LASTING=1");
        PutOlderFiles(outputs);
        const ProgramRun run = MergeWith({"--curve", "standard"}, outputs, options);
        const bool bMet = std::filesystem::remove(m_mark.File("met"));
        if (sKind == "malloc")
            RemoveTraces(run);
        if (run.code == CRASH && sKind == "malloc")
            ExpectWholeFiles(run, outputs, m_outputs.Path());
        else
            ExpectCleanOutcome(run, outputs);
        EXPECT_TRUE(bMet || run.code == 0) << run.err;
        return bMet;
    }

    /// The image library follows null pointers where its texts find no memory. Then, and where the removing
    /// of the working folder finds none, hidden files stay behind, but nothing bears a name that was asked
    /// for.
    void RemoveTraces(const ProgramRun& run)
    {
        for (const std::string& sName : m_outputs.Names())
            if (sName.starts_with(".lumistrand-"))
                std::filesystem::remove(m_outputs.File(sName));
        for (const std::string& sName : m_temporary.Names())
            std::filesystem::remove_all(m_temporary.File(sName));
        m_nCrashes += run.code == CRASH;
    }

    /// How many such calls an untroubled run makes.
    long Calls(const Names& outputs)
    {
        long nLow = 1, nHigh = 1; // the last that is met, the first that isn't
        while (MergeWithFault(outputs, nHigh, false))
            nHigh = 2 * (nLow = nHigh);
        while (nHigh - nLow > 1) {
            const long nMiddle = nLow + (nHigh - nLow) / 2;
            (MergeWithFault(outputs, nMiddle, false) ? nLow : nHigh) = nMiddle;
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
    for (const Names& outputs : ALL_OUTPUTS) {
        for (const std::string& sName : m_outputs.Names())
            std::filesystem::remove(m_outputs.File(sName));
        const long nCalls = Calls(outputs);
        const long nStep = nCalls / (InForm(GetParam().nShort, GetParam().nLong) / 2) + 1;
        for (long nCall = 1; nCall <= nCalls && !HasFailure(); nCall += nStep)
            for (const bool bLasting : {false, true}) {
                nMet += MergeWithFault(outputs, nCall, bLasting); // the libraries' own calls differ a little
                ++nRuns;
            }
        std::printf("%s: %ld calls, one in %ld tried; %d crashes\n", GetParam().szKind, nCalls, nStep,
                    m_nCrashes);
    }
    EXPECT_LE(m_nCrashes, nRuns / 5);
    EXPECT_LE(nRuns / 3, nMet);
}

TEST(WithoutMemory, TheProgramStillSaysSo)
{
    RunOptions options;
    options.environment = {"LD_PRELOAD=" LS_FAILING_SYSTEM, "LS_FAULT_CALL=malloc", "LS_FAULT_LASTING=1"};
    ExpectFailure(3, "lumistrand-hdr-cli: std::bad_alloc", RunProgram({"--version"}, options));
}
