// Links, pipes, folders and devices in the places of what a run reads and writes.
#include "tests/faults/Devices.h"
#include "tests/faults/FaultyProgram.h"

#include <filesystem>

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
        for (const char* szName : {"pipe", "folder", "device", "missing/nothing"})
            fs::create_symlink(m_places.File(szName),
                               m_places.File("link to " + std::string(szName).substr(0, 6)));
        fs::create_symlink(m_vsImages[0], m_places.File("link to a photograph"));
        fs::create_hard_link(m_vsImages[0], m_places.File("second name of a photograph"));
        fs::create_symlink(m_places.File("loop"), m_places.File("loop"));
        m_bHasDevice = PutDevice(m_places.File("device"), FULL_DEVICE);
        m_before = m_places.Names();
    }

    /// Merges with an option that names a place: it is refused with a code, and nothing that was there is
    /// another thing now.
    void ExpectRefused(int nCode, Arguments arguments, const char* szOption, const std::string& sPlace) const
    {
        SCOPED_TRACE(std::string(szOption) + " " + sPlace);
        arguments.insert(arguments.end(), {szOption, sPlace});
        ExpectFailure(nCode, sPlace, Merge({}, {}, arguments));
        EXPECT_EQ(m_photograph, ReadBytes(m_vsImages[0]));
        EXPECT_EQ("precious", ReadText(m_places.File("file")));
        EXPECT_TRUE(fs::is_fifo(m_places.File("pipe")));
        EXPECT_TRUE(fs::is_empty(m_places.File("folder")));
        EXPECT_EQ(m_bHasDevice, fs::is_character_file(m_places.File("device")));
        EXPECT_EQ(m_before, m_places.Names());
        ExpectOnly({});
    }

    TempFolder m_places;
    Names m_before;
    bool m_bHasDevice = false;
    const Bytes m_photograph = ReadBytes(m_vsImages[0]);
};

} // namespace

TEST_F(StrangePlaces, AreRefused)
{
    for (const char* szName : {"pipe", "folder", "link to pipe", "link to folder", "link to a photograph",
                               "second name of a photograph", "loop", "link to missin", "file/x"})
        for (const char* szFormat : {"exr", "png"})
            ExpectRefused(4, {"--format", szFormat}, "-o", m_places.File(szName));
    ExpectRefused(4, {"--format", "exr"}, "-o", "/proc/new");
    for (const char* szName : {"pipe", "folder", "link to pipe", "loop", "file"})
        ExpectRefused(2, {"-o", "x.exr"}, "--curve", m_places.File(szName));
    for (const char* szName : {"pipe", "folder", "link to a photograph"})
        ExpectRefused(4, {"-o", "x.exr"}, "--save-curve", m_places.File(szName));
    for (const char* szName : {"pipe", "file", "loop", "missing"})
        ExpectRefused(3, {"-o", "x.exr"}, "--work-dir", m_places.File(szName));
    if (m_bHasDevice)
        for (const char* szName : {"device", "link to device"}) {
            ExpectRefused(4, {"--format", "exr"}, "-o", m_places.File(szName));
            ExpectRefused(2, {"-o", "x.exr"}, "--curve", m_places.File(szName));
        }
}

TEST_F(StrangePlaces, StandardOutputThatTakesNothingIsAFailure)
{
    RunOptions options;
    options.timeLimit = MOST_SECONDS;
    options.output = m_places.File("device");
    for (const Arguments& arguments : {Arguments{"--help"}, {"--group", m_sources.Path(), "--list"}})
        if (m_bHasDevice)
            ExpectFailure(4, "standard output: No space left on device", RunProgram(arguments, options));

    // A pipe that nobody reads.
    options.output.clear();
    options.program = "/bin/sh";
    const std::string sScript = "exec 3<>\"$1\" 4>\"$1\" 3<&-; exec \"$0\" --version >&4";
    ExpectFailure(4, "standard output: Broken pipe",
                  RunProgram({"-c", sScript, LS_CLI_PROGRAM, m_places.File("pipe")}, options));
}
