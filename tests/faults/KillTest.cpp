// A sudden end at any moment: photographs and older files stay, and the next run is like any other.
#include "tests/faults/FaultyProgram.h"
#include "tests/faults/Form.h"

#include <chrono>
#include <random>

using namespace LS::Tests;

namespace {

constexpr int KILLED = 128 + 9;

class SuddenEnd : public FaultyProgram {
protected:
    SuddenEnd() : FaultyProgram(900, 600) {}
};

} // namespace

TEST_F(SuddenEnd, LeavesPhotographsAndOlderFiles)
{
    using Clock = std::chrono::steady_clock;
    const Names& outputs = ALL_OUTPUTS[0];
    const Bytes photograph = ReadBytes(m_vsImages[0]);
    Untroubled(outputs);
    const auto start = Clock::now();
    Merge(outputs);
    const std::chrono::duration<double> whole = Clock::now() - start;

    std::mt19937 random(3);
    int nKilled = 0;
    for (int i = 0; i < InForm(5, 100); ++i) {
        PutOlderFiles(outputs);
        RunOptions options;
        options.timeLimit = whole.count() * static_cast<double>(random() % 1000) / 1000;
        SCOPED_TRACE(options.timeLimit);
        const ProgramRun run = Merge(outputs, options);
        EXPECT_TRUE(run.code == KILLED || run.code == 0) << run.err;
        nKilled += run.code == KILLED;
        ExpectWholeFiles(run, outputs, m_outputs.Path());
        EXPECT_EQ(photograph, ReadBytes(m_vsImages[0]));
        RemoveTraces();
    }
    EXPECT_LT(0, nKilled);
    const ProgramRun next = Merge(outputs);
    EXPECT_EQ(0, next.code);
    ExpectCleanOutcome(next, outputs);
}
