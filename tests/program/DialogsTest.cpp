// The dialogs of the real program, answered by keys: what they list and ask, and what becomes of files.
#include "tests/program/Waiting.h"
#include "tests/program/WindowProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

using namespace LS::Tests;
using namespace std::chrono_literals;

namespace fs = std::filesystem;

namespace {

constexpr const char* BOX_TITLE = SPLASH_TITLE;
constexpr const char* EXR = "\x76\x2F\x31\x01"; // how such a file begins

/// A program that has merged a small series, with the keyboard on its result.
class Merged : public testing::Test {
protected:
    void SetUp() override
    {
        fs::create_directory(m_program.File("output")); // where its dialogs begin
        ASSERT_TRUE(m_program.StartWithSeries(96, 72));
        ASSERT_TRUE(m_program.Merge());
    }

    /// Opens the dialog for ordinary pictures.
    static bool OpenPictureDialog()
    {
        return PressKeysIn(FRAME_TITLE, {"space", "Down", "Return", "ctrl+s"}) &&
               WaitUntilActive(PICTURE_DIALOG);
    }

    /// Types a name into the toolkit's dialog for the merged image, and leaves that.
    static bool TypeHdrName(const std::string& sName)
    {
        if (!WaitUntilActive(HDR_DIALOG))
            return false;
        TypeText(sName);
        // The toolkit takes no Return before it has looked the name up; a second one mustn't meet the
        // question.
        const auto left = [] { return !IsActive(HDR_DIALOG); };
        return Becomes([&] { return PressKeysIn(HDR_DIALOG, {"Return"}) && Becomes(left, 3s); });
    }

    /// The names in the folder of results.
    std::vector<std::string> Results() const
    {
        std::vector<std::string> vsNames;
        for (const auto& entry : fs::directory_iterator(m_program.File("output")))
            vsNames.push_back(entry.path().filename());
        return vsNames;
    }

    WindowProgram m_program;
};

/// The names of the files whose exposure couldn't be read.
std::vector<std::string> NamesInLog(const WindowProgram& program)
{
    const std::regex form(".*reading the exposure: .*/([^/]+): corrupted image metadata");
    std::vector<std::string> vsNames;
    for (const std::string& sLine : program.LogLines())
        if (std::smatch match; std::regex_match(sLine, match, form))
            vsNames.push_back(match[1]);
    return vsNames;
}

} // namespace

TEST_F(Merged, OnlyYesReplacesAPicture)
{
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
    WriteText(m_program.File("output/pano0.jpg"), "of last year");
    const OtherProgram other;
    ASSERT_TRUE(IsOnScreen(OtherProgram::TITLE));
    ASSERT_TRUE(Activate(FRAME_TITLE));
    ASSERT_TRUE(OpenPictureDialog());
    ASSERT_TRUE(PressKeysIn(PICTURE_DIALOG, {"alt+s"}));
    ASSERT_TRUE(PressKeysIn(BOX_TITLE, {"alt+y"}));
    EXPECT_TRUE(
        Becomes([&] { return ReadText(m_program.File("output/pano0.jpg")).starts_with("\xFF\xD8"); }));
    EXPECT_TRUE(WaitUntilActive(FRAME_TITLE));
}

TEST_F(Merged, ANameWithoutExtensionGetsThatOfItsFormat)
{
    const std::vector<std::string> vsToList{"shift+Tab", "shift+Tab", "space"};
    const std::vector<std::string> vsBack{"Return", "Tab", "Tab"};
    struct Case {
        int nFormat;
        std::string sTyped, sFile, sBegin;
    };
    const Case cases[] = {
        {0, "room", "room.exr", EXR},
        {0, "room.v2", "room.v2", EXR},
        {1, "room", "room.hdr", "#?RGBE"},
        {2, "room", "room.tiff", "II*"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.sTyped << ", format " << c.nFormat);
        ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"ctrl+s"}));
        if (c.nFormat > 0) {
            ASSERT_TRUE(PressKeysIn(HDR_DIALOG, vsToList));
            PressKeys(std::vector<std::string>(static_cast<std::size_t>(c.nFormat), "Down"));
            PressKeys(vsBack);
        }
        ASSERT_TRUE(TypeHdrName(c.sTyped));
        const std::string sFile = m_program.File("output/" + c.sFile);
        EXPECT_TRUE(Becomes([&] { return ReadText(sFile).starts_with(c.sBegin); }))
            << testing::PrintToString(Results());
        fs::remove(sFile);
        EXPECT_THAT(Results(), testing::IsEmpty());
    }
}

TEST_F(Merged, OnlyYesReplacesAMergedImage)
{
    const std::string sFile = m_program.File("output/room.exr");
    WriteText(sFile, "of last year");
    const OtherProgram other;
    ASSERT_TRUE(Activate(FRAME_TITLE));
    ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"ctrl+s"}));
    ASSERT_TRUE(TypeHdrName("room"));
    for (const char* szRefusal : {"Escape", "alt+F4", "alt+n"}) {
        SCOPED_TRACE(szRefusal);
        ASSERT_TRUE(PressKeysIn(BOX_TITLE, {szRefusal}));
        ASSERT_TRUE(PressKeysIn(HDR_DIALOG, {"Return"})) << "it stays, with the name";
        EXPECT_EQ("of last year", ReadText(sFile));
    }
    ASSERT_TRUE(PressKeysIn(BOX_TITLE, {"alt+y"}));
    EXPECT_TRUE(Becomes([&] { return ReadText(sFile).starts_with(EXR); }));
    EXPECT_TRUE(WaitUntilActive(FRAME_TITLE));
    EXPECT_THAT(Results(), testing::ElementsAre("room.exr"));
}

TEST(OpenDialog, ListsPhotographsWhateverTheCaseOfTheirNames)
{
    const std::vector<std::string> vsJpegs{"a.JPG", "b.Jpeg", "c.jpg"}, vsTiffs{"d.TIF", "e.tif", "f.Tiff"};
    const struct {
        std::vector<std::string> vsKeys; ///< from the list of files to the list of formats and back
        std::vector<std::string> vsListed;
    } cases[] = {{{}, vsJpegs}, {{"Tab", "space", "Down", "Return", "shift+Tab"}, vsTiffs}};
    for (const auto& c : cases) {
        WindowProgram program;
        for (const auto& vsNames : {vsJpegs, vsTiffs, {"g.txt"}})
            for (const std::string& sName : vsNames)
                WriteText(program.Folder().File("home/" + sName), "no photograph"); // so the log names each
        ASSERT_TRUE(program.StartToMainWindow());
        ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"ctrl+n"}));
        ASSERT_TRUE(WaitUntilActive(OPEN_DIALOG));
        PressKeys(c.vsKeys);
        PressKeys({"ctrl+a", "Return"});
        EXPECT_TRUE(WaitUntilActive(BOX_TITLE)) << "the first one can't be shown";
        EXPECT_EQ(c.vsListed, NamesInLog(program));
    }
}
