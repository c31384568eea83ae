// Moves up, wraps around, and tells when the splash is over.
#include "app/CreditsScroll.h"

namespace {

constexpr int LAST_POSITION = -300;
constexpr int LAST_SPLASH_POSITION = 100;

} // namespace

int NextCreditsPosition(int position)
{
    return position - 1 < LAST_POSITION ? CREDITS_START : position - 1;
}

bool SplashEndsAt(int position)
{
    return position < LAST_SPLASH_POSITION;
}
