// A sudden end of the window program at any moment: the next start is like any other.
#include "tests/cli/Photographs.h"
#include "tests/faults/Form.h"
#include "tests/program/WindowProgram.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <thread>

using namespace LS::Tests;

namespace {

/// Lets a start go some way: to its beginning, into a merge, or to its end.
void GoSomeWay(WindowProgram& program, const std::string& sArgument, unsigned nWay)
{
    if (nWay == 0) {
        program.Start({sArgument});
        return;
    }
    ASSERT_TRUE(program.StartToMainWindow({sArgument}));
    if (nWay == 1)
        PressKeys({"alt+e", "Return"});
    else
        PressKeys({"ctrl+q"});
}

} // namespace

TEST(SuddenEnd, OfTheWindowLeavesTheNextStartAsItWas)
{
    WindowProgram program;
    const std::vector<std::string> vsPhotographs = WriteSeries(program.Folder().Path(), 1500, 1000);
    std::string sArgument = "open";
    for (const std::string& sPath : vsPhotographs)
        sArgument += "|" + sPath;

    std::mt19937 random(5);
    for (unsigned i = 0; i < static_cast<unsigned>(InForm(5, 100)); ++i) {
        SCOPED_TRACE(i);
        GoSomeWay(program, sArgument, i % 3);
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % (i % 3 == 2 ? 200 : 1200)));
        program.Kill();

        ASSERT_TRUE(program.StartToMainWindow({sArgument})) << "nobody may be too busy: " << program.Output();
        EXPECT_TRUE(Becomes([&] { return program.CacheFiles().empty(); }))
            << "a new series empties the cache";
        PressKeys({"ctrl+q"});
        EXPECT_EQ(0, program.WaitForExit());
        EXPECT_TRUE(program.LocksAndSockets().empty());
    }
}
