// Folders of photographs, listed and merged as a user does it.
#include "tests/cli/Photographs.h"
#include "tests/cli/ProgramRun.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <sstream>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

using Arguments = std::vector<std::string>;
using Names = std::vector<std::string>;

/// A folder of photographs, one for outputs, and one for temporary files that must be empty at the end.
class Batch : public testing::Test {
protected:
    ~Batch() override { EXPECT_EQ(Names{}, m_temporary.Names()); }

    ProgramRun Run(const Arguments& arguments, RunOptions options = {})
    {
        options.folder = m_outputs.Path();
        options.environment.push_back("TMPDIR=" + m_temporary.Path());
        return RunProgram(arguments, options);
    }

    ProgramRun RunGroup(Arguments arguments, const RunOptions& options = {})
    {
        arguments.insert(arguments.end(), {"--group", m_photos.Path()});
        return Run(arguments, options);
    }

    /// A photograph of the scene: a time of 14:05, a shutter time, a camera.
    void Take(const char* szName, const char* szSeconds, const char* szShutter, const char* szCamera = "One",
              int nWidth = 32)
    {
        WritePhotograph(m_photos.File(szName), {1, szShutter, "8/1", nWidth, 24,
                                                std::string("2009:03:07 14:05:") + szSeconds, szCamera});
    }

    /// Three series of two: a1 a2, b1 b2, c1 c2.
    void TakeThreeSeries()
    {
        const char* const aszSeconds[] = {"00", "10", "20"};
        for (int i = 0; i < 3; ++i)
            for (const char* szShutter : {"1/60", "1/15"}) {
                const std::string sName{static_cast<char>('a' + i), szShutter[2] == '6' ? '1' : '2'};
                Take((sName + ".jpg").c_str(), aszSeconds[i], szShutter);
            }
    }

    /// "name: a.jpg b.jpg\n" for each line of a list, the folder left out.
    std::string Listed(const std::string& sList) const
    {
        std::string sText;
        std::istringstream list(sList);
        for (std::string sLine; std::getline(list, sLine);) {
            std::istringstream line(sLine);
            std::string sField;
            std::getline(line, sField, '\t');
            sText += sField + ":";
            while (std::getline(line, sField, '\t'))
                sText += " " + fs::path(sField).lexically_relative(m_photos.Path()).native();
            sText += "\n";
        }
        return sText;
    }

    TempFolder m_photos, m_outputs, m_temporary;
};

} // namespace

TEST_F(Batch, ListsTheSeriesOfAFolder)
{
    // Names run against the times; the clock of the second camera runs with the first one's.
    Take("z1.jpg", "00.10", "1/60");
    Take("z0.jpg", "00.20", "1/240");
    Take("other1.JPG", "00.15", "1/60", "Two");
    Take("y0.jpg", "00.30", "1/15");
    Take("other2.JPG", "00.25", "1/15", "Two");
    Take("again1.jpg", "00.40", "1/60");
    Take("again2.jpg", "00.50", "1/240");
    Take("large1.jpg", "00.45", "1/1000", "One", 40);
    Take("large2.jpg", "00.55", "1/2", "One", 40);
    Take("late 1.jpg", "30", "1/60");
    Take("late 2.jpg", "31", "1/15");
    Take("single.jpg", "50", "1/60");
    const ProgramRun run = RunGroup({"--list"});
    EXPECT_EQ(0, run.code);
    EXPECT_EQ("again1: again1.jpg again2.jpg\n"
              "large1: large1.jpg large2.jpg\n"
              "late 1: late 1.jpg late 2.jpg\n"
              "other1: other1.JPG other2.JPG\n"
              "z1: z1.jpg z0.jpg y0.jpg\n",
              Listed(run.out));
    EXPECT_EQ("lumistrand-hdr-cli: " + m_photos.File("single.jpg") + ": passed over: a single shot\n",
              run.err);
}

TEST_F(Batch, FileTimesStandInForMissingOnes)
{
    const auto start = fs::file_time_type::clock::now();
    const struct {
        const char* szName;
        const char* szShutter;
        int nSeconds;
    } photographs[] = {
        {"a.jpg", "1/60", 0}, {"c.jpg", "1/30", 1}, {"b.jpg", "1/15", 60}, {"d.jpg", "1/8", 61}};
    for (const auto& p : photographs) {
        WritePhotograph(m_photos.File(p.szName), {1, p.szShutter, "8/1"});
        fs::last_write_time(m_photos.File(p.szName), start + std::chrono::seconds(p.nSeconds));
    }
    EXPECT_EQ("a: a.jpg c.jpg\nb: b.jpg d.jpg\n", Listed(RunGroup({"--list"}).out));
    EXPECT_EQ("a: a.jpg c.jpg b.jpg d.jpg\n", Listed(RunGroup({"--list", "--gap", "60"}).out));
}

TEST_F(Batch, WhatIsNoPhotographIsPassedOver)
{
    Take("a.jpg", "00", "1/60");
    Take("b.jpg", "01", "1/15");
    fs::copy_file(m_photos.File("a.jpg"), m_photos.File("copy.png"));
    fs::copy_file(m_photos.File("a.jpg"), m_photos.File(".hidden.jpg"));
    fs::create_directory(m_photos.File("folder.jpg"));
    fs::create_symlink("nowhere", m_photos.File("dangling.tif"));
    WriteText(m_photos.File("text.jpg"), "no picture");
    WriteText(m_photos.File("empty.tiff"), "");
    WriteText(m_photos.File("notes.txt"), "no picture");
    WritePhotograph(m_photos.File("noexposure.jpg"), {1, std::nullopt, "8/1"});
    const ProgramRun run = RunGroup({"--list"});
    EXPECT_EQ(0, run.code);
    EXPECT_EQ("a: a.jpg b.jpg\n", Listed(run.out));
    for (const char* szText :
         {"folder.jpg: passed over: not a regular file", "dangling.tif: passed over: No such",
          "text.jpg: passed over", "empty.tiff: passed over",
          "noexposure.jpg: passed over: no usable exposure time"})
        EXPECT_NE(std::string::npos, run.err.find(szText)) << szText << "\n" << run.err;
    EXPECT_EQ(5, std::count(run.err.begin(), run.err.end(), '\n')) << run.err;
    const ProgramRun quiet = RunGroup({"--list", "--quiet"});
    EXPECT_EQ("", quiet.err);
    EXPECT_EQ(run.out, quiet.out) << "a list is asked for, quiet or not";
}

TEST_F(Batch, FoldersWithoutSeriesAreNamed)
{
    const auto expectInput = [](const ProgramRun& run, const char* szText) {
        EXPECT_EQ(2, run.code);
        EXPECT_EQ("", run.out);
        EXPECT_NE(std::string::npos, run.err.find(szText)) << run.err;
    };
    expectInput(RunGroup({"--list"}), "holds no series");
    Take("a.jpg", "00", "1/60");
    Take("b.jpg", "01", "1/60");
    expectInput(RunGroup({"-o", "%.exr"}), "holds no series");
    expectInput(Run({"--group", "missing", "--list"}), "missing: No such file");
    expectInput(Run({"--group", m_photos.File("a.jpg"), "--list"}), "Not a directory");
}

TEST_F(Batch, NamesThatNoLineCanHoldAreTold)
{
    TakeThreeSeries();
    fs::rename(m_photos.File("b2.jpg"), m_photos.File("b2\t.jpg"));
    const ProgramRun run = RunGroup({"--list"});
    EXPECT_EQ(5, run.code);
    EXPECT_EQ("a1: a1.jpg a2.jpg\nc1: c1.jpg c2.jpg\n", Listed(run.out));
    EXPECT_NE(std::string::npos, run.err.find("tab")) << run.err;
    EXPECT_EQ(0, RunGroup({"-o", "%.exr"}).code);
    EXPECT_EQ((Names{"a1.exr", "b1.exr", "c1.exr"}), m_outputs.Names());
}

TEST_F(Batch, MergesEachSeriesAndGoesOnAfterAFailure)
{
    TakeThreeSeries();
    // This one ends before its first scan: its tags and its size are readable, but no pixel is.
    const Bytes whole = ReadBytes(m_photos.File("b2.jpg"));
    constexpr unsigned char START_OF_SCAN[] = {0xFF, 0xDA};
    const auto scan =
        std::search(whole.begin(), whole.end(), std::begin(START_OF_SCAN), std::end(START_OF_SCAN));
    fs::resize_file(m_photos.File("b2.jpg"), static_cast<std::uintmax_t>(scan - whole.begin()));
    const ProgramRun run = RunGroup({"-o", "%.exr", "-o", "%.png", "--save-curve", "%.crv"});
    EXPECT_EQ(5, run.code);
    EXPECT_NE(std::string::npos, run.err.find("b2.jpg")) << run.err;
    EXPECT_NE(std::string::npos, run.err.find("1 of 3 series failed")) << run.err;
    EXPECT_EQ((Names{"a1.crv", "a1.exr", "a1.png", "c1.crv", "c1.exr", "c1.png"}), m_outputs.Names());

    // What a single merge of the same photographs writes.
    ASSERT_EQ(0, Run({m_photos.File("c1.jpg"), m_photos.File("c2.jpg"), "-o", "alone.exr"}).code);
    EXPECT_EQ(ReadBytes(m_outputs.File("alone.exr")), ReadBytes(m_outputs.File("c1.exr")));

    // Mended, only the missing series is merged.
    WriteElements(m_photos.File("b2.jpg"), whole);
    WriteText(m_outputs.File("a1.exr"), "mine");
    const ProgramRun rerun =
        RunGroup({"-o", "%.exr", "-o", "%.png", "--save-curve", "%.crv", "--skip-existing"});
    EXPECT_EQ(0, rerun.code) << rerun.err;
    EXPECT_LT(100U, fs::file_size(m_outputs.File("b1.exr")));
    EXPECT_EQ(4U, fs::file_size(m_outputs.File("a1.exr")));
}

TEST_F(Batch, NothingIsReplacedUnasked)
{
    TakeThreeSeries();
    WriteText(m_outputs.File("b1.exr"), "mine");
    const ProgramRun run = RunGroup({"-o", "%.exr"});
    EXPECT_EQ(5, run.code);
    EXPECT_NE(std::string::npos, run.err.find("--force")) << run.err;
    EXPECT_EQ(4U, fs::file_size(m_outputs.File("b1.exr")));
    EXPECT_EQ((Names{"a1.exr", "b1.exr", "c1.exr"}), m_outputs.Names());
    EXPECT_EQ(0, RunGroup({"-o", "%.exr", "--force"}).code);
    EXPECT_LT(4U, fs::file_size(m_outputs.File("b1.exr")));
}

TEST_F(Batch, NoPhotographOfTheFolderIsReplaced)
{
    // "a1.tif" is the output of one series and the second photograph of another.
    TakeThreeSeries();
    fs::copy_file(m_photos.File("b1.jpg"), m_photos.File("a0.tif"));
    fs::copy_file(m_photos.File("b2.jpg"), m_photos.File("a1.tif"));
    const Bytes before = ReadBytes(m_photos.File("a1.tif"));
    const ProgramRun run = RunGroup({"-o", m_photos.File("%.tif"), "--force"});
    EXPECT_EQ(5, run.code);
    EXPECT_NE(std::string::npos, run.err.find("a1.tif: is one of the photographs")) << run.err;
    EXPECT_EQ(before, ReadBytes(m_photos.File("a1.tif")));
}

TEST_F(Batch, InterruptsStopTheFolder)
{
    for (const char* szName : {"a.jpg", "b.jpg"})
        Take(szName, "00", szName[0] == 'a' ? "1/60" : "1/15", "One", 2000);
    for (int i = 0; i < 40; ++i)
        for (const char* szName : {"a.jpg", "b.jpg"})
            fs::copy_file(m_photos.File(szName), m_photos.File("x" + std::to_string(100 + i) + szName));
    RunOptions options;
    options.interruptAfter = 0.4;
    const ProgramRun run = RunGroup({"-o", "%.tif"}, options);
    EXPECT_EQ(130, run.code) << run.err;
    EXPECT_NE(std::string::npos, run.err.find("stopped after")) << run.err;
    const Names names = m_outputs.Names();
    EXPECT_GT(41U, names.size());
    for (const std::string& sName : names)
        EXPECT_EQ(".tif", fs::path(sName).extension()) << sName;
}

TEST_F(Batch, ParallelJobsWriteTheSameFiles)
{
    TakeThreeSeries();
    fs::rename(m_photos.File("b1.jpg"),
               m_photos.File("b '1' $x \\.jpg")); // what a shell could take for its own
    ASSERT_EQ(0, RunGroup({"-o", "%.exr", "-o", "%.hdr"}).code);
    const Names names = m_outputs.Names();
    ASSERT_EQ(6U, names.size());

    const TempFolder parallel, home;
    const ProgramRun list = RunGroup({"--list"});
    WriteText(parallel.File("list"), list.out);
    RunOptions options;
    options.program = "/usr/bin/parallel";
    options.environment = {"HOME=" + home.Path()};
    const ProgramRun run = Run({"--will-cite", "-j2", "-a", parallel.File("list"), LS_CLI_PROGRAM, "--series",
                                "{}", "-o", parallel.File("%.exr"), "-o", parallel.File("%.hdr")},
                               options);
    EXPECT_EQ(0, run.code) << run.err;
    fs::remove(parallel.File("list"));
    ASSERT_EQ(names, parallel.Names());
    for (const std::string& sName : names)
        EXPECT_EQ(ReadBytes(m_outputs.File(sName)), ReadBytes(parallel.File(sName))) << sName;
}
