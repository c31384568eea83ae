// Later starts of the program beside one that holds a merged image, and the sudden ends of that one.
#include "tests/cli/Photographs.h"
#include "tests/program/Waiting.h"
#include "tests/program/WindowProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <map>

using namespace LS::Tests;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

namespace {

constexpr const char* JOB_TITLE = "^Please wait a moment...$";
constexpr int REFUSED = 255;

class SecondStart : public testing::Test {
protected:
    void StartWithSeries(int nWidth, int nHeight)
    {
        std::string sArgument = "open";
        for (const std::string& sPath : WriteSeries(m_program.Folder().Path(), nWidth, nHeight))
            sArgument += "|" + sPath;
        ASSERT_TRUE(m_program.StartToMainWindow({sArgument}));
    }

    static void Merge() { ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"alt+e", "Return"})); }

    void StartMerged()
    {
        StartWithSeries(320, 240);
        Merge();
        ASSERT_TRUE(Becomes([this] { return m_program.CacheFiles().size() == 4; }));
        ASSERT_TRUE(WaitUntilGone(JOB_TITLE));
    }

    /// A merge that stands still half way, since the process does.
    void StartAndStopInMerge()
    {
        StartWithSeries(3000, 2000);
        Merge();
        while (m_program.IsRunning() && m_program.CacheFiles().empty()) {
        }
        m_program.Signal(SIGSTOP);
        ASSERT_GT(4U, m_program.CacheFiles().size()) << "the merge is over";
    }

    /// Names of the working files, and what stands for their contents.
    std::map<std::string, std::size_t> WorkingFiles() const
    {
        std::map<std::string, std::size_t> files;
        for (const std::string& sName : m_program.CacheFiles())
            files[sName] = std::hash<std::string>()(ReadText(m_program.File("hdrcache/" + sName)));
        return files;
    }

    void ExpectNothingLeft() const
    {
        EXPECT_THAT(m_program.LocksAndSockets(), IsEmpty());
        EXPECT_THAT(m_program.CacheFiles(), IsEmpty());
    }

    WindowProgram m_program;
};

fs::perms PermissionsOf(const std::string& sPath)
{
    return fs::status(sPath).permissions();
}

} // namespace

TEST_F(SecondStart, TakesNothingFromTheFirst)
{
    StartMerged();
    const auto before = WorkingFiles();
    const struct {
        std::vector<std::string> vsArguments;
        const char* szOutput; ///< a part of what it prints
    } cases[] = {{{}, ""}, {{"plain"}, ""}, {{"--help"}, "show version information"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.vsArguments));
        ProgramProcess second = m_program.StartAgain(c.vsArguments);
        EXPECT_EQ(0, second.WaitForExit());
        EXPECT_THAT(second.Output(), HasSubstr(c.szOutput));
        EXPECT_EQ(before, WorkingFiles());
    }

    ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"ctrl+s"}));
    ASSERT_TRUE(WaitUntilActive("^Save Image$"));
    TypeText(m_program.Folder().File("room.exr"));
    PressKeys({"Return"});
    EXPECT_TRUE(Becomes([this] { return ReadBytes(m_program.Folder().File("room.exr")).size() > 10'000; }));
}

TEST_F(SecondStart, ReplacesTheSeriesAndRaisesTheWindow)
{
    StartMerged();
    Minimize(FRAME_TITLE);
    ASSERT_TRUE(WaitUntilGone(FRAME_TITLE));
    ProgramProcess second = m_program.StartAgain({"x|/no/such.jpg"});
    EXPECT_EQ(0, second.WaitForExit());
    ASSERT_TRUE(WaitForWindow(SPLASH_TITLE)) << "the question whether to save";
    EXPECT_TRUE(IsOnScreen(FRAME_TITLE));
    EXPECT_TRUE(PressKeysIn(SPLASH_TITLE, {"alt+n"}));
    EXPECT_TRUE(Becomes([this] { return m_program.Log().find("/no/such.jpg") != std::string::npos; }));
}

TEST_F(SecondStart, FindsTheFirstBusyAndSaysSoOnTop)
{
    StartMerged();
    const auto before = WorkingFiles();
    ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"alt+h", "a"}));
    ASSERT_TRUE(WaitForWindow(SPLASH_TITLE)) << "the about window";
    for (const char* szArgument : {"x|/no/such.jpg", "plain"}) {
        ProgramProcess second = m_program.StartAgain({szArgument});
        EXPECT_TRUE(Becomes([&] { return IsOnTop(second.Id(), SPLASH_TITLE); })) << "above the about window";
        EXPECT_TRUE(PressKeysIn(SPLASH_TITLE, {"Return"}));
        EXPECT_EQ(REFUSED, second.WaitForExit());
        EXPECT_EQ(before, WorkingFiles());
    }
    EXPECT_EQ(1, CountWindows(SPLASH_TITLE)) << "the about window stays";
    EXPECT_EQ("", m_program.Log());
}

TEST_F(SecondStart, DuringTheSplashIsSeenAboveIt)
{
    m_program.Start();
    ASSERT_TRUE(WaitForWindow(SPLASH_TITLE));
    ProgramProcess second = m_program.StartAgain();
    EXPECT_TRUE(Becomes([&] { return IsOnTop(second.Id(), SPLASH_TITLE); }));
    ASSERT_TRUE(WaitForWindow(FRAME_TITLE));
    EXPECT_TRUE(Becomes([&] { return IsOnTop(second.Id(), SPLASH_TITLE); })) << "above the main window";
}

TEST_F(SecondStart, InMidMergeTakesNothingFromIt)
{
    StartAndStopInMerge();
    const auto before = WorkingFiles();
    ProgramProcess help = m_program.StartAgain({"--help"});
    EXPECT_EQ(0, help.WaitForExit());
    ProgramProcess second = m_program.StartAgain();
    ASSERT_TRUE(WaitForWindow(SPLASH_TITLE)) << "no answer, so it is too busy";
    EXPECT_TRUE(PressKeysIn(SPLASH_TITLE, {"Return"}));
    EXPECT_EQ(REFUSED, second.WaitForExit());
    EXPECT_EQ(before, WorkingFiles());
    m_program.Signal(SIGCONT);
    EXPECT_TRUE(WaitUntilGone(JOB_TITLE));
    EXPECT_EQ(4U, WorkingFiles().size());
    EXPECT_EQ("", m_program.Log());
}

TEST_F(SecondStart, FindsTheFirstAfterAFileDialogShowedTheLock)
{
    ASSERT_TRUE(m_program.StartToMainWindow());
    ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"ctrl+n"}));
    ASSERT_TRUE(WaitUntilActive("^Open Images$")) << "it shows the home, where the lock is";
    ASSERT_TRUE(PressKeysIn("^Open Images$", {"Escape"}));
    ASSERT_TRUE(WaitUntilGone("^Open Images$"));
    const std::vector<std::string> vsBefore = m_program.LocksAndSockets();
    EXPECT_EQ(0, m_program.StartAgain().WaitForExit());
    EXPECT_EQ(vsBefore, m_program.LocksAndSockets());
    PressKeysIn(FRAME_TITLE, {"ctrl+q"});
    EXPECT_EQ(0, m_program.WaitForExit());
    EXPECT_EQ("", m_program.Log());
    ExpectNothingLeft();
}

TEST_F(SecondStart, WorkingFilesAreClosedToOthers)
{
    fs::create_directory(m_program.File("hdrcache"));
    fs::permissions(m_program.File("hdrcache"), fs::perms(0755));
    StartMerged();
    EXPECT_EQ(fs::perms(0700), PermissionsOf(m_program.File("hdrcache")));
    for (const std::string& sName : m_program.CacheFiles())
        EXPECT_EQ(fs::perms(0600), PermissionsOf(m_program.File("hdrcache/" + sName))) << sName;
}

TEST_F(SecondStart, SignalsEndTheFirstInOrder)
{
    const struct {
        int nSignal;
        std::vector<std::string> vsKeys; ///< what opens the window that waits for an answer
        const char* szWindow;
    } cases[] = {
        {SIGTERM, {}, FRAME_TITLE},
        {SIGHUP, {"ctrl+q"}, SPLASH_TITLE}, // the question whether to save
        {SIGINT, {"ctrl+s"}, "^Save Image$"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szWindow);
        StartMerged();
        PressKeysIn(FRAME_TITLE, c.vsKeys);
        ASSERT_TRUE(WaitForWindow(c.szWindow));
        fs::remove(m_program.File("lsConfigHDR.xml"));
        m_program.Signal(c.nSignal);
        EXPECT_EQ(128 + c.nSignal, m_program.WaitForExit());
        EXPECT_TRUE(fs::exists(m_program.File("lsConfigHDR.xml")));
        ExpectNothingLeft();
        EXPECT_EQ("", m_program.Log());
    }
}

TEST_F(SecondStart, ASignalStopsAMergeInOrder)
{
    StartAndStopInMerge();
    m_program.Signal(SIGTERM);
    m_program.Signal(SIGCONT);
    EXPECT_EQ(128 + SIGTERM, m_program.WaitForExit());
    ExpectNothingLeft();
}

TEST_F(SecondStart, ALostDisplayEndsTheFirstInOrder)
{
    StartMerged();
    fs::remove(m_program.File("lsConfigHDR.xml"));
    CutConnection(FRAME_TITLE);
    EXPECT_EQ(EXIT_FAILURE, m_program.WaitForExit());
    EXPECT_TRUE(fs::exists(m_program.File("lsConfigHDR.xml")));
    ExpectNothingLeft();
}
