// Links, pipes, folders and devices in the places of what a run reads and writes.
#include "tests/faults/FaultyProgram.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

class StrangePlaces : public FaultyProgram {
protected:
    StrangePlaces()
    {
        EXPECT_EQ(0, mkfifo(m_places.File("pipe").c_str(), 0600));
        fs::create_directory(m_places.File("folder"));
        WriteText(m_places.File("file"), "precious");
        fs::create_symlink(m_places.File("pipe"), m_places.File("link to a pipe"));
        fs::create_symlink(m_places.File("folder"), m_places.File("link to a folder"));
        fs::create_symlink("/dev/full", m_places.File("link to a device"));
        fs::create_symlink(m_vsImages[0], m_places.File("link to a photograph"));
        fs::create_hard_link(m_vsImages[0], m_places.File("second name of a photograph"));
        fs::create_symlink(m_places.File("loop"), m_places.File("loop"));
        fs::create_symlink(m_places.File("missing/nothing"), m_places.File("link to no folder"));
    }

    /// Nothing that was there is another thing now.
    void ExpectNothingTouched(const Bytes& photograph)
    {
        EXPECT_EQ(photograph, ReadBytes(m_vsImages[0]));
        EXPECT_EQ("precious", ReadText(m_places.File("file")));
        EXPECT_TRUE(fs::is_fifo(m_places.File("pipe")));
        EXPECT_TRUE(fs::is_empty(m_places.File("folder")));
        EXPECT_EQ(10U, m_places.Names().size());
        EXPECT_TRUE(m_outputs.Names().empty());
        EXPECT_TRUE(m_temporary.Names().empty());
    }

    TempFolder m_places;
};

} // namespace

TEST_F(StrangePlaces, OfOutputsAreRefused)
{
    const Bytes photograph = ReadBytes(m_vsImages[0]);
    std::vector<std::string> vsPlaces{"/dev/full", "/dev/null", "/dev/tty", "/proc/self/mem", "/proc/new"};
    for (const char* szName :
         {"pipe", "folder", "link to a pipe", "link to a folder", "link to a device", "link to a photograph",
          "second name of a photograph", "loop", "link to no folder", "file/x", "pipe/x"})
        vsPlaces.push_back(m_places.File(szName));
    for (const std::string& sPlace : vsPlaces)
        for (const char* szFormat : {"exr", "hdr", "tif", "png"}) {
            SCOPED_TRACE(sPlace + " as " + szFormat);
            const ProgramRun run = MergeWith({"--format", szFormat, "-o", sPlace}, {});
            EXPECT_EQ(4, run.code) << run.err;
            EXPECT_NE(std::string::npos, run.err.find(sPlace)) << run.err;
            ExpectNothingTouched(photograph);
        }
}

TEST_F(StrangePlaces, OfCurvesAreRefused)
{
    const Bytes photograph = ReadBytes(m_vsImages[0]);
    for (const char* szName : {"pipe", "folder", "link to a pipe", "link to a device", "loop", "file"}) {
        SCOPED_TRACE(szName);
        const ProgramRun run = MergeWith({"--curve", m_places.File(szName), "-o", "x.exr"}, {});
        EXPECT_EQ(2, run.code) << run.err;
        ExpectNothingTouched(photograph);
    }
    for (const char* szName : {"pipe", "folder", "link to a photograph", "link to a device"}) {
        SCOPED_TRACE(szName);
        const ProgramRun run = MergeWith({"--save-curve", m_places.File(szName), "-o", "x.exr"}, {});
        EXPECT_EQ(4, run.code) << run.err;
        ExpectNothingTouched(photograph);
    }
}

TEST_F(StrangePlaces, OfWorkingFilesAreRefused)
{
    const Bytes photograph = ReadBytes(m_vsImages[0]);
    for (const std::string& sPlace :
         {m_places.File("pipe"), m_places.File("file"), m_places.File("loop"), m_places.File("missing"),
          std::string("/dev/null"), std::string("/proc")}) {
        SCOPED_TRACE(sPlace);
        const ProgramRun run = MergeWith({"--work-dir", sPlace, "-o", "x.exr"}, {});
        EXPECT_EQ(3, run.code) << run.err;
        ExpectNothingTouched(photograph);
    }
}

TEST_F(StrangePlaces, StandardOutputThatTakesNothingIsAFailure)
{
    RunOptions options;
    options.output = "/dev/full";
    options.timeLimit = MOST_SECONDS;
    for (const std::vector<std::string>& vsArguments :
         {std::vector<std::string>{"--help"}, {"--version"}, {"--group", m_sources.Path(), "--list"}}) {
        SCOPED_TRACE(vsArguments[0]);
        const ProgramRun run = RunProgram(vsArguments, options);
        EXPECT_EQ(4, run.code);
        EXPECT_NE(std::string::npos, run.err.find("standard output: No space left on device")) << run.err;
    }
}
