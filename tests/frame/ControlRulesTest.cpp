// Which commands and controls are on in which state.
#include "frame/ControlRules.h"

#include <gtest/gtest.h>

#include <tuple>

TEST(ControlRules, EachStateHasItsCommandsAndPages)
{
    struct Case {
        FrameState state;
        bool bCreateHDR, bSave, bSourcePage, bResultPage;
        Page onTop;
    };
    for (const Case& c : {Case{FrameState::Empty, false, false, false, false, Page::SourceImages},
                          Case{FrameState::SourcesLoaded, true, false, true, false, Page::SourceImages},
                          Case{FrameState::Result, true, true, true, true, Page::ResultImage}}) {
        SCOPED_TRACE(static_cast<int>(c.state));
        const StateRules rules = RulesOf(c.state);
        EXPECT_EQ(std::tie(c.bCreateHDR, c.bSave, c.bSourcePage, c.bResultPage, c.onTop),
                  std::tie(rules.bCreateHDR, rules.bSave, rules.bSourcePage, rules.bResultPage, rules.onTop));
    }
}

namespace {

constexpr auto LEAVE = std::nullopt;
constexpr auto ON = std::optional(true);
constexpr auto OFF = std::optional(false);

void ExpectButtons(const ListButtons& expected, const ListButtons& buttons)
{
    EXPECT_EQ(expected.bRemove, buttons.bRemove);
    EXPECT_EQ(expected.bUp, buttons.bUp);
    EXPECT_EQ(expected.bDown, buttons.bDown);
}

} // namespace

TEST(ControlRules, IdleTimeOnlyTakesTheMoveButtonsAway)
{
    struct Case {
        const char* szWhat;
        std::size_t nImages;
        int nRows;
        RowSelection selection;
        ListButtons expected;
    };
    const Case cases[] = {
        {"no images, five free rows", 0, 5, {true, true, false}, {OFF, OFF, OFF}},
        {"nothing selected", 3, 3, {}, {ON, LEAVE, LEAVE}},
        {"one row", 1, 1, {true, true, true}, {ON, OFF, OFF}},
        {"one row of which nothing is selected", 1, 1, {}, {ON, LEAVE, LEAVE}},
        {"first row", 3, 3, {true, true, false}, {ON, OFF, LEAVE}},
        {"middle row", 3, 3, {true, false, false}, {ON, LEAVE, LEAVE}},
        {"last row", 3, 3, {true, false, true}, {ON, LEAVE, OFF}},
        {"all rows", 3, 3, {true, true, true}, {ON, OFF, OFF}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szWhat);
        ExpectButtons(c.expected, ListButtonsAtIdle(c.nImages, c.nRows, c.selection));
    }
}

TEST(ControlRules, ASelectionGivesTheMoveButtonsBack)
{
    struct Case {
        std::size_t nImages;
        int nRows, nTopRow;
        ListButtons expected;
    };
    for (const Case& c : {Case{0, 5, 0, {LEAVE, LEAVE, LEAVE}}, Case{3, 3, 0, {LEAVE, OFF, ON}},
                          Case{3, 3, 1, {LEAVE, ON, ON}}, Case{3, 3, 2, {LEAVE, ON, OFF}},
                          Case{1, 1, 0, {LEAVE, OFF, OFF}}}) {
        SCOPED_TRACE(testing::Message() << "row " << c.nTopRow << " of " << c.nRows);
        ExpectButtons(c.expected, ListButtonsAtSelection(c.nImages, c.nRows, c.nTopRow));
    }
}

TEST(ControlRules, SlidersGiveTenthsAsTheEngineReadsThem)
{
    EXPECT_EQ(2.2F, ToneValue(GAMMA_AT_REST));
    EXPECT_EQ(0.0F, ToneValue(EXPOSURE_AT_REST));
    EXPECT_EQ(1.0F, ToneValue(10));
    EXPECT_EQ(-5.0F, ToneValue(-50));
    EXPECT_EQ(5.0F, ToneValue(50));
    EXPECT_EQ(0.3F, ToneValue(3)) << "rounded once, from the quotient in double precision";
    EXPECT_FALSE(ToneSlidersOn(BIT_DEPTH_32));
    EXPECT_TRUE(ToneSlidersOn(BIT_DEPTH_8));
}
