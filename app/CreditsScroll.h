// How the credits of the splash and about window move.
#pragma once

/// The y of the first line of the credits within their area, at the start: just below its lower edge.
constexpr int CREDITS_START = 150;

/// The position one tick later: one pixel up, or back at the start once it has passed -300.
int NextCreditsPosition(int position);

/// Whether the splash window ends at this position: half of the way up its area, after 51 ticks.
bool SplashEndsAt(int position);
