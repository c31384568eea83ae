// The dialogs of the real program, answered by keys: what they list and ask, and what becomes of files.
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

    /// Types a name into the toolkit's dialog for the merged image, and leaves that.
    static bool TypeHdrName(const std::string& sName)
    {
        if (!WaitUntilActive(HDR_DIALOG))
            return false;
        TypeText(sName);
        // The toolkit takes no Return before it has looked the name up; a second one mustn't meet the
        // question.
        const auto left = [] { return !IsActive(HDR_DIALOG); };
        return Becomes([&] { return PressKeysIn(HDR_DIALOG, {"Return"}) && Becomes(left, 1s); });
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
    const Process other = m_program.StartOther();
    ASSERT_TRUE(Activate(FRAME_TITLE));
    ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"space", "Down", "Return", "ctrl+s"}));
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
    EXPECT_TRUE(WaitUntilActive(FRAME_TITLE)) << "beside the other program";
}

TEST_F(Merged, ANameWithoutExtensionGetsThatOfItsFormatAndOnlyYesReplaces)
{
    const std::string sFile = m_program.File("output/room.exr");
    WriteText(sFile, "of last year");
    const Process other = m_program.StartOther();
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

    ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"ctrl+s"}));
    ASSERT_TRUE(
        PressKeysIn(HDR_DIALOG, {"shift+Tab", "shift+Tab", "space", "Down", "Down", "Return", "Tab", "Tab"}));
    ASSERT_TRUE(TypeHdrName("room"));
    EXPECT_TRUE(Becomes([&] { return ReadText(m_program.File("output/room.tiff")).starts_with("II*"); }));
    EXPECT_THAT(Results(), testing::UnorderedElementsAre("room.exr", "room.tiff"));
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
