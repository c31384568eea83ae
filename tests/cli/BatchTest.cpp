// Folders of photographs, listed and merged as a user does it.
#include "tests/cli/Photographs.h"
#include "tests/cli/ProgramRun.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

class Batch : public ProgramFixture {
protected:
    ProgramRun RunGroup(Arguments arguments, const RunOptions& options = {})
    {
        arguments.insert(arguments.end(), {"--group", m_sources.Path()});
        return Run(arguments, options);
    }

    /// A photograph of the scene: a time of 14:05, a shutter time, a camera.
    void Take(const std::string& sName, const std::string& sSeconds, const char* szShutter,
              const char* szCamera = "One", int nWidth = 32)
    {
        WritePhotograph(m_sources.File(sName),
                        {1, szShutter, "8/1", nWidth, 24, "2009:03:07 14:05:" + sSeconds, szCamera});
    }

    /// Three series of two: a1 a2, b1 b2, c1 c2.
    void TakeThreeSeries(int nWidth = 32)
    {
        for (int i = 0; i < 3; ++i)
            for (const char* szShutter : {"1/60", "1/15"})
                Take({static_cast<char>('a' + i), szShutter[2] == '6' ? '1' : '2', '.', 'j', 'p', 'g'},
                     std::to_string(10 + 10 * i), szShutter, "One", nWidth);
    }

    /// A list with the folder left out, and spaces for its tabs.
    std::string Listed(std::string sList) const
    {
        const std::string sFolder = "\t" + m_sources.Path() + "/";
        for (std::size_t n = 0; (n = sList.find(sFolder)) != std::string::npos;)
            sList.replace(n, sFolder.size(), " ");
        return sList;
    }
};

} // namespace

TEST_F(Batch, ListsTheSeriesOfAFolder)
{
    // Names run against the times; the clock of the second camera runs with the first one's.
    Take("z 1.jpg", "10.10", "1/60");
    Take("z0.jpg", "10.20", "1/240");
    Take("other1.JPG", "10.15", "1/60", "Two");
    Take("other2.JPG", "10.25", "1/15", "Two");
    Take("again1.jpg", "10.40", "1/60");
    Take("again2.jpg", "10.50", "1/240");
    Take("large1.jpg", "10.45", "1/1000", "One", 40);
    Take("large2.jpg", "10.55", "1/2", "One", 40);
    Take("single.jpg", "50", "1/60");
    const ProgramRun run = RunGroup({"--list"});
    EXPECT_EQ(0, run.code);
    EXPECT_EQ("again1 again1.jpg again2.jpg\n"
              "large1 large1.jpg large2.jpg\n"
              "other1 other1.JPG other2.JPG\n"
              "z 1 z 1.jpg z0.jpg\n",
              Listed(run.out));
    EXPECT_EQ("lumistrand-hdr-cli: " + m_sources.File("single.jpg") + ": passed over: a single shot\n",
              run.err);
}

TEST_F(Batch, FileTimesStandInForMissingOnes)
{
    const auto start = fs::file_time_type::clock::now();
    for (const int nSeconds : {0, 1, 60, 61}) {
        const std::string sFile = m_sources.File(std::to_string(nSeconds) + ".jpg");
        WritePhotograph(sFile, {1, "1/" + std::to_string(nSeconds + 10), "8/1"});
        fs::last_write_time(sFile, start + std::chrono::seconds(nSeconds));
    }
    EXPECT_EQ("0 0.jpg 1.jpg\n60 60.jpg 61.jpg\n", Listed(RunGroup({"--list"}).out));
    EXPECT_EQ("0 0.jpg 1.jpg 60.jpg 61.jpg\n", Listed(RunGroup({"--list", "--gap", "60"}).out));
}

TEST_F(Batch, WhatIsNoPhotographIsPassedOver)
{
    Take("a.jpg", "10", "1/60");
    Take("b.jpg", "11", "1/15");
    fs::copy_file(m_sources.File("a.jpg"), m_sources.File("copy.png"));
    fs::copy_file(m_sources.File("a.jpg"), m_sources.File(".hidden.jpg"));
    fs::create_symlink("nowhere", m_sources.File("dangling.tif"));
    WriteText(m_sources.File("text.jpg"), "no picture");
    WritePhotograph(m_sources.File("noexposure.jpg"), {1, std::nullopt, "8/1"});
    const ProgramRun run = RunGroup({"--list"});
    EXPECT_EQ(0, run.code);
    EXPECT_EQ("a a.jpg b.jpg\n", Listed(run.out));
    for (const char* szText : {"dangling.tif: passed over: No such", "text.jpg: passed over",
                               "noexposure.jpg: passed over: no usable exposure time"})
        ExpectHas(szText, run.err);
    EXPECT_EQ(3, std::count(run.err.begin(), run.err.end(), '\n')) << run.err;
    EXPECT_EQ("", RunGroup({"--list", "--quiet"}).err);
}

TEST_F(Batch, FoldersWithoutSeriesAreNamed)
{
    Take("a.jpg", "10", "1/60");
    Take("b.jpg", "11", "1/60");
    const std::pair<std::string, const char*> cases[] = {{m_sources.Path(), "holds no series"},
                                                         {"missing", "missing: No such file"},
                                                         {m_sources.File("a.jpg"), "Not a directory"}};
    for (const auto& [sFolder, szText] : cases)
        ExpectFailure(2, szText, Run({"--group", sFolder, "-o", "%.exr", "--quiet"}));
}

TEST_F(Batch, MergesEachSeriesAndGoesOnAfterAFailure)
{
    TakeThreeSeries();
    // This one ends before its first scan: its tags and its size are readable, but no pixel is.
    const Bytes whole = ReadBytes(m_sources.File("b2.jpg"));
    constexpr unsigned char START_OF_SCAN[] = {0xFF, 0xDA};
    const auto scan =
        std::search(whole.begin(), whole.end(), std::begin(START_OF_SCAN), std::end(START_OF_SCAN));
    fs::resize_file(m_sources.File("b2.jpg"), static_cast<std::uintmax_t>(scan - whole.begin()));
    const Arguments outputs{"-o", "%.exr", "-o", "%.png", "--save-curve", "%.crv"};
    const ProgramRun run = RunGroup(outputs);
    EXPECT_EQ(5, run.code);
    ExpectHas("b2.jpg", run.err);
    ExpectHas("1 of 3 series failed", run.err);
    EXPECT_EQ((Names{"a1.crv", "a1.exr", "a1.png", "c1.crv", "c1.exr", "c1.png"}), m_outputs.Names());

    // What a single merge of the same photographs writes.
    ASSERT_EQ(0, Run({m_sources.File("c1.jpg"), m_sources.File("c2.jpg"), "-o", "alone.exr"}).code);
    EXPECT_EQ(ReadBytes(m_outputs.File("alone.exr")), ReadBytes(m_outputs.File("c1.exr")));

    // With the photograph whole again, only the missing series is merged.
    WriteElements(m_sources.File("b2.jpg"), whole);
    WriteText(m_outputs.File("a1.exr"), "mine");
    Arguments again = outputs;
    again.emplace_back("--skip-existing");
    const ProgramRun rerun = RunGroup(again);
    EXPECT_EQ(0, rerun.code) << rerun.err;
    EXPECT_LT(100U, fs::file_size(m_outputs.File("b1.exr")));
    EXPECT_EQ("mine", ReadText(m_outputs.File("a1.exr")));
}

TEST_F(Batch, NothingIsReplacedUnaskedAndNoPhotographAtAll)
{
    // "a1.tif" is the output of one series and the second photograph of another.
    TakeThreeSeries();
    fs::copy_file(m_sources.File("b1.jpg"), m_sources.File("a0.tif"));
    fs::rename(m_sources.File("b2.jpg"), m_sources.File("a1.tif"));
    const Bytes before = ReadBytes(m_sources.File("a1.tif"));
    const ProgramRun photographs = RunGroup({"-o", m_sources.File("%.tif"), "--force"});
    EXPECT_EQ(5, photographs.code);
    ExpectHas("a1.tif: is one of the photographs", photographs.err);
    EXPECT_EQ(before, ReadBytes(m_sources.File("a1.tif")));
    fs::remove(m_sources.File("c1.tif"));

    WriteText(m_outputs.File("c1.exr"), "mine");
    const ProgramRun run = RunGroup({"-o", "%.exr"});
    EXPECT_EQ(5, run.code);
    ExpectHas("--force", run.err);
    EXPECT_EQ("mine", ReadText(m_outputs.File("c1.exr")));
    EXPECT_TRUE(fs::exists(m_outputs.File("a1.exr")));
    EXPECT_EQ(0, RunGroup({"-o", "%.exr", "--force"}).code);
    EXPECT_LT(4U, fs::file_size(m_outputs.File("c1.exr")));
}

TEST_F(Batch, TheEndOfOneMergeIsAFailureAndAnInterruptTheEndOfAll)
{
    TakeThreeSeries(60'000); // so that each merge lasts long enough to be met
    RunOptions options;
    options.when = [this](pid_t nProgram) {
        const std::vector<pid_t> vnMerges = ChildrenOf(nProgram);
        return HasBegun() && !vnMerges.empty() && kill(vnMerges[0], SIGKILL) == 0;
    };
    const ProgramRun failed = RunGroup({"-o", "%.tif"}, options);
    EXPECT_EQ(5, failed.code);
    ExpectHas("the merge was ended: Killed", failed.err);
    EXPECT_EQ((Names{"b1.tif", "c1.tif"}), m_outputs.Names());
    for (const std::string& sName : m_temporary.Names()) // what nobody can take away after such an end
        fs::remove_all(m_temporary.File(sName));

    options.when = [this](pid_t) { return HasBegun(); };
    options.signal = SIGINT;
    const ProgramRun stopped = RunGroup({"-o", "%.exr"}, options);
    EXPECT_EQ(130, stopped.code) << stopped.err;
    ExpectHas("stopped after 0 of 3", stopped.err);
    ExpectOnly({"b1.tif", "c1.tif"});
}

TEST_F(Batch, ParallelJobsWriteTheSameFiles)
{
    TakeThreeSeries();
    fs::rename(m_sources.File("b1.jpg"),
               m_sources.File("b '1' $x \\.jpg")); // what a shell could take for its own
    ASSERT_EQ(0, RunGroup({"-o", "%.exr"}).code);
    const TempFolder parallel, home;
    WriteText(home.File("list"), RunGroup({"--list"}).out);
    RunOptions options;
    options.program = "/usr/bin/parallel";
    options.environment = {"HOME=" + home.Path()};
    EXPECT_EQ(0, Run({"--will-cite", "-j2", "-a", home.File("list"), LS_CLI_PROGRAM, "--series", "{}", "-o",
                      parallel.File("%.exr")},
                     options)
                     .code);
    ASSERT_EQ(3U, parallel.Names().size());
    for (const std::string& sName : m_outputs.Names())
        EXPECT_EQ(ReadBytes(m_outputs.File(sName)), ReadBytes(parallel.File(sName))) << sName;
}
