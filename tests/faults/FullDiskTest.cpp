// Disks of all sizes, from none to just enough: what is there is whole, and what was there stays.
#include "tests/faults/FaultyProgram.h"
#include "tests/faults/Form.h"
#include "tests/faults/SmallDisk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using namespace LS::Tests;

namespace {

constexpr std::size_t PAGE = 4096;

/// Wide enough for the road of the tone mapper that keeps luminance in a file.
constexpr int WIDTH = 1600, HEIGHT = 40;

class FullDisk : public FaultyProgram {
protected:
    FullDisk() : FaultyProgram(WIDTH, HEIGHT) {}

    static bool CanMount()
    {
        if (SmallDisk(PAGE).IsMounted())
            return true;
        TellNotTried("mounting is refused here; limits on the size of files are tried elsewhere");
        return false;
    }
};

/// Sizes of disks: none, the first pages, steps up to the whole, and those that only the tail doesn't fit.
std::set<std::size_t> Sizes(std::size_t nWhole, int nSteps)
{
    std::set<std::size_t> sizes{PAGE, 2 * PAGE};
    const std::size_t nPages = (nWhole + PAGE - 1) / PAGE;
    for (int i = 1; i <= nSteps; ++i)
        sizes.insert(std::max<std::size_t>(
                         nPages * static_cast<std::size_t>(i) / static_cast<std::size_t>(nSteps), 1) *
                     PAGE);
    if (nPages > 1)
        sizes.insert((nPages - 1) * PAGE);
    return sizes;
}

} // namespace

TEST_F(FullDisk, WorkingFilesThatDontFit)
{
    if (!CanMount())
        return;
    const std::size_t nSources = 3UL * 4 * WIDTH * HEIGHT, nFloats = 12UL * WIDTH * HEIGHT;
    const std::vector<std::string> vsOutputs{"x.exr", "x.png"};
    Untroubled(vsOutputs);
    std::set<int> codes;
    for (const std::size_t nSize :
         Sizes(nSources + nFloats + 8UL * WIDTH * HEIGHT + 8 * PAGE, InForm(10, 60))) {
        SCOPED_TRACE(nSize);
        const SmallDisk disk(nSize);
        PutOlderFiles(vsOutputs);
        RunOptions options;
        options.environment = {"TMPDIR=" + disk.Path()};
        const ProgramRun run = Merge(vsOutputs, options);
        ExpectCleanOutcome(run, vsOutputs);
        EXPECT_TRUE(NamesIn(disk.Path()).empty());
        codes.insert(run.code);
        if (nSize < nSources + nFloats) {
            EXPECT_EQ(3, run.code) << run.err;
            EXPECT_NE(std::string::npos, run.err.find("No space left on device")) << run.err;
        }
    }
    EXPECT_EQ((std::set{0, 3, 4}), codes) << "the split of luminance fails between merge and success";
}

TEST_F(FullDisk, OutputsThatDontFit)
{
    if (!CanMount())
        return;
    for (const char* szOutput : {"x.exr", "x.hdr", "x.tif", "x.jpg", "x.png", "x.bmp", "ldr.tif"}) {
        const std::vector<std::string> vsOutputs{szOutput};
        const std::size_t nWhole = Untroubled(vsOutputs).begin()->second.size();
        for (const std::size_t nSize : Sizes(nWhole, InForm(4, 60))) {
            SCOPED_TRACE(testing::Message() << szOutput << " of " << nWhole << " on " << nSize);
            const SmallDisk disk(nSize + PAGE); // one for the older file
            RunOptions options;
            options.folder = disk.Path();
            PutOlderFiles(vsOutputs, disk.Path());
            const ProgramRun run = Merge(vsOutputs, options);
            ExpectCleanOutcome(run, vsOutputs, disk.Path());
            EXPECT_EQ(nSize < nWhole ? 4 : 0, run.code) << run.err;
        }
    }
}

TEST_F(FullDisk, CurvesThatDontFit)
{
    if (!CanMount())
        return;
    const SmallDisk disk(PAGE);
    WriteText(disk.Path() + "/filling", std::string(PAGE, 'x'));
    const ProgramRun run = Merge({"x.exr", disk.Path() + "/x.crv"});
    EXPECT_EQ(4, run.code);
    EXPECT_NE(std::string::npos, run.err.find("No space left on device")) << run.err;
    EXPECT_EQ((std::vector<std::string>{"filling"}), NamesIn(disk.Path()));
    EXPECT_TRUE(m_outputs.Names().empty());
}

#ifndef __SANITIZE_ADDRESS__ // which takes terabytes of addresses for itself
namespace {

/// Whether the libraries have room to start at all. Where they haven't, they end the process before the first
/// line of the program: they can't be loaded, throw, or can't make their threads.
bool DoLibrariesStart(const RunOptions& options)
{
    return RunProgram({"--version"}, options).code == 0;
}

} // namespace

TEST_F(FullDisk, LittleMemory)
{
    const std::vector<std::string> vsOutputs{"x.exr", "x.jpg"};
    Untroubled(vsOutputs);
    std::set<int> codes;
    for (long nMegabytes = 20; nMegabytes <= 600; nMegabytes += InForm(40, 4)) {
        SCOPED_TRACE(nMegabytes);
        PutOlderFiles(vsOutputs);
        RunOptions options;
        options.memoryLimit = nMegabytes << 20;
        if (!DoLibrariesStart(options))
            continue;
        const ProgramRun run = Merge(vsOutputs, options);
        ExpectCleanOutcome(run, vsOutputs);
        codes.insert(run.code);
    }
    EXPECT_TRUE(codes.contains(0));
}
#endif
