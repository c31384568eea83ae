// The dialogs of the real program, answered by keys: what is asked, what happens to files, who is active
// then.
#include "tests/cli/Photographs.h"
#include "tests/program/Waiting.h"
#include "tests/program/WindowProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

using namespace LS::Tests;

namespace fs = std::filesystem;

namespace {

constexpr const char* BOX_TITLE = SPLASH_TITLE;
constexpr const char* PROGRESS_TITLE = "^Please wait a moment...$";
constexpr const char* PICTURE_DIALOG = "^Save Panoramic Image$";

std::string SeriesArgument(const std::string& sFolder)
{
    std::string sArgument = "open";
    for (const std::string& sPath : WriteSeries(sFolder, 96, 72))
        sArgument += "|" + sPath;
    return sArgument;
}

/// A program that has merged a small series, with the keyboard on its result.
class Merged : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_program.StartToMainWindow({SeriesArgument(m_program.Folder().Path())}));
        ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"alt+e", "Return"}));
        ASSERT_TRUE(Becomes([this] { return !m_program.CacheFiles().empty(); }));
        ASSERT_TRUE(WaitUntilGone(PROGRESS_TITLE));
    }

    /// Opens the dialog for ordinary pictures.
    static bool OpenPictureDialog()
    {
        return PressKeysIn(FRAME_TITLE, {"space", "Down", "Return", "ctrl+s"}) &&
               WaitUntilActive(PICTURE_DIALOG);
    }

    WindowProgram m_program;
};

} // namespace

TEST_F(Merged, OnlyYesReplacesAPicture)
{
    fs::create_directory(m_program.File("output"));
    const std::string sFile = m_program.File("output/pano0.jpg");
    WriteText(sFile, "of last year");
    ASSERT_TRUE(OpenPictureDialog());
    const std::vector<std::string> refusals[] = {{"Escape"}, {"alt+F4"}, {"alt+n"}, {"Left", "Return"}};
    for (const auto& vsKeys : refusals) {
        SCOPED_TRACE(testing::PrintToString(vsKeys));
        ASSERT_TRUE(PressKeysIn(PICTURE_DIALOG, {"alt+s"}));
        ASSERT_TRUE(PressKeysIn(BOX_TITLE, vsKeys));
        EXPECT_TRUE(WaitUntilActive(PICTURE_DIALOG));
        ASSERT_TRUE(ReadText(sFile) == "of last year");
    }
    ASSERT_TRUE(PressKeysIn(PICTURE_DIALOG, {"alt+s"}));
    ASSERT_TRUE(PressKeysIn(BOX_TITLE, {"alt+y"}));
    EXPECT_TRUE(Becomes([&] { return ReadText(sFile).starts_with("\xFF\xD8"); }));
}

TEST_F(Merged, TheWindowIsActiveAgainBesideOtherPrograms)
{
    fs::create_directory(m_program.File("output"));
    WriteText(m_program.File("output/pano0.jpg"), "of last year");
    const OtherProgram other;
    ASSERT_TRUE(IsOnScreen(OtherProgram::TITLE));
    ActivateWindow(FRAME_TITLE);
    ASSERT_TRUE(OpenPictureDialog());
    ASSERT_TRUE(PressKeysIn(PICTURE_DIALOG, {"alt+s"}));
    ASSERT_TRUE(PressKeysIn(BOX_TITLE, {"alt+y"}));
    EXPECT_TRUE(
        Becomes([&] { return ReadText(m_program.File("output/pano0.jpg")).starts_with("\xFF\xD8"); }));
    EXPECT_TRUE(WaitUntilActive(FRAME_TITLE));
}
