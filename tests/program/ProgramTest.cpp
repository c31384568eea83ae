// The whole program under the eyes of a user: it starts, takes arguments, works by keys, and leaves nothing.
#include "tests/cli/Photographs.h"
#include "tests/program/WindowProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <sys/stat.h>

using namespace LS::Tests;
using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

constexpr int FAILED_START = 255;

void ExpectNothingLeft(const WindowProgram& program)
{
    EXPECT_THAT(program.LocksAndSockets(), IsEmpty());
    EXPECT_THAT(program.CacheFiles(), IsEmpty());
}

} // namespace

TEST(Program, StartsAndEndsWithoutATrace)
{
    WindowProgram program;
    ASSERT_TRUE(program.StartToMainWindow());
    EXPECT_FALSE(IsOnScreen(SPLASH_TITLE));
    EXPECT_FALSE(program.LocksAndSockets().empty());
    PressKeys({"ctrl+q"});
    EXPECT_EQ(0, program.WaitForExit()) << program.Output();
    EXPECT_TRUE(fs::exists(program.File("HDRLog.log")));
    EXPECT_EQ("", program.Log());
    EXPECT_THAT(ReadText(program.File("lsConfigHDR.xml")), HasSubstr("Version=\"6\""));
    ExpectNothingLeft(program);
}

TEST(Program, TheSplashEndsByItself)
{
    WindowProgram program;
    program.Start();
    ASSERT_TRUE(WaitForWindow(SPLASH_TITLE));
    EXPECT_FALSE(IsOnScreen(FRAME_TITLE));
    ASSERT_TRUE(WaitForWindow(FRAME_TITLE));
    EXPECT_FALSE(IsOnScreen(SPLASH_TITLE));
}

TEST(Program, VersionOptionsStartItAsUsual)
{
    for (const char* szOption : {"-V", "--version"}) {
        SCOPED_TRACE(szOption);
        WindowProgram program;
        EXPECT_TRUE(program.StartToMainWindow({szOption}));
        PressKeys({"ctrl+q"});
        EXPECT_EQ(0, program.WaitForExit());
    }
}

TEST(Program, HelpAndUnknownOptionsShowTheUsageAndEndIt)
{
    for (const char* szOption : {"--help", "-h", "--no-such-option"}) {
        SCOPED_TRACE(szOption);
        const bool bHelp = szOption != std::string("--no-such-option");
        WindowProgram program;
        program.Start({szOption});
        if (!bHelp) {
            ASSERT_TRUE(WaitForWindow(SPLASH_TITLE));
            ClickWindow(SPLASH_TITLE);
        }
        EXPECT_EQ(bHelp ? 0 : FAILED_START, program.WaitForExit());
        EXPECT_THAT(program.Output(), HasSubstr("show version information"));
        EXPECT_THAT(program.Output(), HasSubstr("[url(s)...]"));
        ExpectNothingLeft(program);
    }
}

TEST(Program, OnlyPathsOfTheLastArgumentAreLoaded)
{
    struct Case {
        std::vector<std::string> vsArguments;
        std::size_t nImages;
    };
    // Each photograph that isn't there leaves lines in the log, and the first is asked for on the screen.
    const Case cases[] = {
        {{"x|/no/a.jpg|/no/b.jpg"}, 2}, {{"|/no/a.jpg"}, 1}, {{"/no/a.jpg"}, 0}, {{"x|"}, 0},
        {{"x|/no/a.jpg", "y"}, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.vsArguments));
        WindowProgram program;
        ASSERT_TRUE(program.StartToMainWindow(c.vsArguments));
        if (c.nImages > 0) {
            ASSERT_TRUE(WaitForWindow(SPLASH_TITLE))
                << "the box that a photograph doesn't exist has this title";
            PressKeys({"Return"});
            EXPECT_TRUE(WaitUntilGone(SPLASH_TITLE));
        }
        PressKeys({"ctrl+q"});
        EXPECT_EQ(0, program.WaitForExit());
        std::size_t nFaults = 0;
        for (const std::string& sLine : program.LogLines())
            nFaults += sLine.ends_with(": Error: Exif error!");
        EXPECT_EQ(c.nImages, nFaults) << program.Log();
    }
}

TEST(Program, AMessageWaitsForTheWindowToStandInItsPlace)
{
    WindowProgram program;
    ASSERT_TRUE(program.StartToMainWindow());
    const wxRect place = PlaceOf(FRAME_TITLE);
    PressKeysIn(FRAME_TITLE, {"ctrl+q"});
    ASSERT_EQ(0, program.WaitForExit());

    ASSERT_TRUE(program.StartToMainWindow({"x|/no/such.jpg"}));
    ASSERT_TRUE(WaitForWindow(SPLASH_TITLE)) << "the message";
    EXPECT_EQ(place, PlaceOf(FRAME_TITLE));
    EXPECT_TRUE(place.Contains(PlaceOf(SPLASH_TITLE)));
    PressKeysIn(SPLASH_TITLE, {"Return"});
    ASSERT_TRUE(WaitUntilActive(FRAME_TITLE));
    EXPECT_EQ(place, PlaceOf(FRAME_TITLE));
}

TEST(Program, FoldersMayHaveAnyName)
{
    for (const char* szName : {"größe", "Фото", "\xf0\x9f\x93\xb7 \xe5\x86\x99\xe7\x9c\x9f"}) {
        SCOPED_TRACE(szName);
        WindowProgram program(szName, std::string("home ") + szName);
        ASSERT_TRUE(program.StartToMainWindow());
        PressKeysIn(FRAME_TITLE, {"ctrl+q"});
        EXPECT_EQ(0, program.WaitForExit());
        EXPECT_EQ("", program.Log());
        EXPECT_THAT(ReadText(program.File("lsConfigHDR.xml")), HasSubstr(szName));
        ExpectNothingLeft(program);
    }
}

TEST(Program, ALogLineTellsTimeAndLevel)
{
    WindowProgram program;
    ASSERT_TRUE(program.StartToMainWindow({"x|/no/such.jpg"}));
    ASSERT_TRUE(WaitForWindow(SPLASH_TITLE));
    const std::regex form("[01]\\d/[0-3]\\d/20\\d\\d [0-2]\\d:[0-5]\\d:[0-5]\\d: Error: .*");
    ASSERT_FALSE(program.LogLines().empty()) << "nothing may be lost in a crash";
    for (const std::string& sLine : program.LogLines()) {
        EXPECT_TRUE(std::regex_match(sLine, form)) << sLine;
        EXPECT_THAT(program.Output(), HasSubstr(sLine)) << "each message reaches the error stream too";
    }
}

TEST(Program, SettingsThatCannotBeWrittenEndTheStartWithAMessage)
{
    WindowProgram program;
    fs::create_directories(program.File("lsConfigHDR.xml/not empty"));
    WriteText(program.File("HDRLog.log"), "of the last run\n");
    program.Start();
    ASSERT_TRUE(WaitForWindow("^Tolvanic Lumistrand Error$"));
    PressKeys({"Return"});
    EXPECT_EQ(FAILED_START, program.WaitForExit());
    EXPECT_EQ("of the last run\n", program.Log());
    ExpectNothingLeft(program);
}

TEST(Program, AnotherThingInPlaceOfTheLogKeepsNobodyFromWorking)
{
    WindowProgram program;
    ASSERT_EQ(0, mkfifo(program.File("HDRLog.log").c_str(), 0600));
    ASSERT_TRUE(program.StartToMainWindow());
    PressKeys({"ctrl+q"});
    EXPECT_EQ(0, program.WaitForExit());
}

TEST(Program, MergesByKeysAndAsksBeforeTheResultIsLost)
{
    WindowProgram program;
    ASSERT_TRUE(program.StartWithSeries());
    ASSERT_TRUE(program.Merge());
    // The question has the program's name as its title.
    for (const char* szStay : {"Escape", "alt+F4", "alt+c"}) {
        SCOPED_TRACE(szStay);
        ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"ctrl+q"}));
        ASSERT_TRUE(PressKeysIn(SPLASH_TITLE, {szStay}));
        EXPECT_TRUE(WaitUntilActive(FRAME_TITLE));
        EXPECT_FALSE(program.CacheFiles().empty());
    }
    ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"ctrl+q"}));
    ASSERT_TRUE(PressKeysIn(SPLASH_TITLE, {"alt+n"}));
    EXPECT_EQ(0, program.WaitForExit());
    EXPECT_EQ("", program.Log());
    ExpectNothingLeft(program);
}
