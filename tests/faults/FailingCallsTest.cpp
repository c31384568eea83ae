// Each system call and each allocation of a merge fails once, and once for good: nothing is damaged.
#include "tests/faults/FaultyProgram.h"
#include "tests/faults/Form.h"

#include <csignal>
#include <filesystem>

using namespace LS::Tests;

namespace {

constexpr int CRASH = 128 + SIGSEGV;

class FailingCalls : public FaultyProgram, public testing::WithParamInterface<const char*> {
protected:
    /// @return whether the call that was to fail came at all
    bool MergeWithFault(const Names& outputs, long nCall, bool bLasting)
    {
        const std::string sKind = GetParam();
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
        const ProgramRun run = Merge(outputs, options, {"--curve", "standard"});
        const bool bMet = std::filesystem::remove(m_mark.File("met"));
        // The image library follows null pointers where its texts find no memory. Then, and where the
        // removing of the working folder finds none, hidden files stay behind, but under no name asked for.
        const bool bCrashed = run.code == CRASH && sKind == "malloc";
        m_nCrashes += bCrashed;
        if (sKind == "malloc")
            RemoveTraces();
        if (bCrashed)
            ExpectWholeFiles(run, outputs, m_outputs.Path());
        else
            ExpectCleanOutcome(run, outputs);
        EXPECT_TRUE(bMet || run.code == 0) << run.err;
        return bMet;
    }

    TempFolder m_mark;
    int m_nCrashes = 0;
};

INSTANTIATE_TEST_SUITE_P(, FailingCalls,
                         testing::Values("write", "read", "close", "fsync", "rename", "malloc"),
                         [](const auto& kind) { return std::string(kind.param); });

} // namespace

// Each of the first calls, then ever wider steps until none is met.
TEST_P(FailingCalls, DamageNothing)
{
    int nRuns = 0;
    for (const Names& outputs : ALL_OUTPUTS) {
        for (const std::string& sName : m_outputs.Names())
            std::filesystem::remove(m_outputs.File(sName));
        for (long nCall = 1; MergeWithFault(outputs, nCall, false) && !HasFailure();
             nCall += nCall / InForm(4, 200) + 1, ++nRuns)
            MergeWithFault(outputs, nCall, true); // may miss it: the libraries' own calls differ a little
    }
    std::printf("%s: %d calls tried; %d crashes\n", GetParam(), nRuns, m_nCrashes);
    EXPECT_LT(0, nRuns);
    EXPECT_LE(m_nCrashes, nRuns / 5 * 2);
}

TEST(WithoutMemory, TheProgramStillSaysSo)
{
    RunOptions options;
    options.environment = {"LD_PRELOAD=" LS_FAILING_SYSTEM, "LS_FAULT_CALL=malloc", "LS_FAULT_LASTING=1"};
    ExpectFailure(3, "lumistrand-hdr-cli: std::bad_alloc", RunProgram({"--version"}, options));
}
