// The movement of the credits.
#include "app/CreditsScroll.h"

#include <gtest/gtest.h>

namespace {

int PositionAfter(int nTicks)
{
    int position = CREDITS_START;
    while (nTicks-- > 0)
        position = NextCreditsPosition(position);
    return position;
}

} // namespace

TEST(CreditsScroll, RisesAndStartsAgain)
{
    const struct {
        const char* name;
        int ticks, position;
        bool splashEnds;
    } cases[] = {
        {"at the start", 0, 150, false},
        {"one tick", 1, 149, false},
        {"the splash's last tick", 50, 100, false},
        {"the splash is over", 51, 99, true},
        {"the highest position", 450, -300, true},
        {"back at the start", 451, 150, false},
        {"a tick later", 452, 149, false},
        {"the second cycle is over", 902, 150, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.position, PositionAfter(c.ticks));
        EXPECT_EQ(c.splashEnds, SplashEndsAt(c.position));
    }
}
