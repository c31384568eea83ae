// The whole program under the eyes of a user: it starts, takes arguments, works by keys, and leaves nothing.
#include "tests/program/WindowProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <sys/stat.h>

using namespace LS::Tests;
using testing::HasSubstr;

namespace fs = std::filesystem;

TEST(Program, StartsAndEndsWithoutATraceInAnyFolder)
{
    const std::string sName = "größe Фото \xf0\x9f\x93\xb7 \xe5\x86\x99\xe7\x9c\x9f";
    WindowProgram program(sName, "home of " + sName);
    ASSERT_TRUE(program.StartToMainWindow({"--version"})); // which starts it as usual
    EXPECT_FALSE(IsOnScreen(SPLASH_TITLE));
    EXPECT_FALSE(program.LocksAndSockets().empty());
    PressKeys({"ctrl+q"});
    EXPECT_EQ(0, program.WaitForExit());
    EXPECT_EQ("", program.Output());
    EXPECT_TRUE(fs::exists(program.File("HDRLog.log")));
    EXPECT_EQ("", program.Log());
    EXPECT_THAT(ReadText(program.File("lsConfigHDR.xml")), HasSubstr(sName));
    program.ExpectNothingLeft();
}

TEST(Program, HelpAndUnknownOptionsShowTheUsageAndEndIt)
{
    const struct {
        const char* szOption;
        int nCode;
    } cases[] = {{"--help", 0}, {"--no-such-option", REFUSED}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szOption);
        WindowProgram program;
        program.Start({c.szOption});
        if (c.nCode != 0) {
            ASSERT_TRUE(WaitForWindow(SPLASH_TITLE));
            ClickWindow(SPLASH_TITLE);
        }
        EXPECT_EQ(c.nCode, program.WaitForExit());
        EXPECT_THAT(program.Output(), HasSubstr("[url(s)...]"));
        program.ExpectNothingLeft();
    }
}

TEST(Program, FilesOfTheCommandLineComeWhenTheWindowStandsInItsPlace)
{
    WindowProgram program;
    ASSERT_TRUE(program.StartToMainWindow({"/no/a.jpg"})); // no list of paths
    const wxRect place = PlaceOf(FRAME_TITLE);
    PressKeysIn(FRAME_TITLE, {"ctrl+q"});
    ASSERT_EQ(0, program.WaitForExit());
    EXPECT_EQ("", program.Log());

    ASSERT_TRUE(program.StartToMainWindow({"x|/no/a.jpg|/no/b.jpg"}));
    ASSERT_TRUE(WaitForWindow(SPLASH_TITLE)) << "the message that the selected one isn't there";
    EXPECT_EQ(place, PlaceOf(FRAME_TITLE));
    EXPECT_TRUE(place.Contains(PlaceOf(SPLASH_TITLE)));
    // Each missing photograph leaves lines in the log at once: nothing may be lost in a crash.
    const std::regex form("[01]\\d/[0-3]\\d/20\\d\\d [0-2]\\d:[0-5]\\d:[0-5]\\d: Error: .*");
    for (const std::string& sLine : program.LogLines()) {
        EXPECT_TRUE(std::regex_match(sLine, form)) << sLine;
        EXPECT_THAT(program.Output(), HasSubstr(sLine)) << "each message reaches the error stream too";
    }
    for (const char* const szPath : {"/no/a.jpg", "/no/b.jpg"})
        EXPECT_THAT(program.Log(), HasSubstr("reading the exposure: " + std::string(szPath)));
    PressKeysIn(SPLASH_TITLE, {"Return"});
    ASSERT_TRUE(WaitUntilActive(FRAME_TITLE));
    EXPECT_EQ(place, PlaceOf(FRAME_TITLE));
}

TEST(Program, SettingsThatCannotBeWrittenEndTheStartWithAMessage)
{
    WindowProgram program;
    fs::create_directories(program.File("lsConfigHDR.xml/not empty"));
    WriteText(program.File("HDRLog.log"), "of the last run\n");
    program.Start();
    ASSERT_TRUE(PressKeysIn("^Tolvanic Lumistrand Error$", {"Return"}));
    EXPECT_EQ(REFUSED, program.WaitForExit());
    EXPECT_EQ("of the last run\n", program.Log());
    program.ExpectNothingLeft();
}

TEST(Program, AnotherThingInPlaceOfTheLogKeepsNobodyFromWorking)
{
    WindowProgram program;
    ASSERT_EQ(0, mkfifo(program.File("HDRLog.log").c_str(), 0600));
    ASSERT_TRUE(program.StartToMainWindow());
    PressKeys({"ctrl+q"});
    EXPECT_EQ(0, program.WaitForExit());
}

TEST(Program, HelpOpensInTheBrowser)
{
    WindowProgram program;
    const std::string sOpened = program.Folder().File("opened");
    fs::create_directory(program.File("help"));
    WriteText(program.File("help/Lumistrand6_help.htm"), "<html></html>");
    fs::create_directories(program.Home() + "/.local/share/applications");
    WriteText(program.Home() + "/.local/share/applications/browser.desktop",
              "[Desktop Entry]\nType=Application\nName=Browser\nExec=cp %f " + sOpened + "\n");
    WriteText(program.Home() + "/.local/share/applications/mimeapps.list",
              "[Default Applications]\ntext/html=browser.desktop\n");
    ASSERT_TRUE(program.StartToMainWindow());
    ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"F1"}));
    EXPECT_TRUE(Becomes([&] { return ReadText(sOpened) == "<html></html>"; }));
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
    program.ExpectNothingLeft();
}
