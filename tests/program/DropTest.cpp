// Files dragged from another program onto the window.
#include "tests/program/WindowProgram.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace LS::Tests;

namespace {

const std::string DROPPED = "/no/dropped.jpg";

class Drop : public testing::Test {
protected:
    /// Drags the file into a corner of the main window that small dialogs don't cover.
    void DropOnFrame()
    {
        m_sExpected += "begins\n";
        PressButtonOn(OTHER_TITLE);
        ASSERT_TRUE(Becomes([this] { return m_source.Output() == m_sExpected; }));
        m_sExpected += "ended\n";
        ReleaseButtonAt(PlaceOf(FRAME_TITLE).GetBottomRight() - wxPoint(30, 30));
        ASSERT_TRUE(Becomes([this] { return m_source.Output() == m_sExpected; }));
    }

    /// How often the dropped file was taken: each time its metadata is looked for, in vain.
    std::ptrdiff_t TimesTaken() const
    {
        return std::ranges::count_if(m_program.LogLines(), [](const std::string& sLine) {
            return sLine.find("reading the exposure: " + DROPPED) != std::string::npos;
        });
    }

    WindowProgram m_program;
    const Process m_source = m_program.StartOther(DROPPED);
    std::string m_sExpected; ///< what the source has to say up to now
};

} // namespace

TEST_F(Drop, BeginsASeriesAndThenAddsToIt)
{
    ASSERT_TRUE(m_program.StartToMainWindow());
    DropOnFrame();
    ASSERT_TRUE(WaitForWindow(SPLASH_TITLE)) << "the message that it isn't there: it is the selected one";
    ASSERT_TRUE(PressKeysIn(SPLASH_TITLE, {"Return"}) && WaitUntilGone(SPLASH_TITLE));
    EXPECT_EQ(1, TimesTaken()) << m_program.Log();
    DropOnFrame();
    EXPECT_TRUE(Becomes([this] { return TimesTaken() == 2; }));
}

TEST_F(Drop, DoesNothingWhileADialogIsUp)
{
    ASSERT_TRUE(m_program.StartWithSeries());
    ASSERT_TRUE(m_program.Merge());
    const struct {
        std::vector<std::string> vsKeys;
        const char* szTitle;
    } cases[] = {{{"ctrl+q"}, SPLASH_TITLE}, {{"ctrl+s"}, HDR_DIALOG}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szTitle);
        ASSERT_TRUE(PressKeysIn(FRAME_TITLE, c.vsKeys));
        ASSERT_TRUE(WaitUntilActive(c.szTitle));
        if (std::string(c.szTitle) != SPLASH_TITLE)
            Do("windowmove", c.szTitle, "300 1000");
        DropOnFrame();
        ASSERT_TRUE(Activate(c.szTitle)) << "taken for another one's affair, or answered";
        ASSERT_TRUE(PressKeysIn(c.szTitle, {"Escape"}));
        ASSERT_TRUE(WaitUntilGone(c.szTitle));
    }
    EXPECT_EQ("", m_program.Log());
}
