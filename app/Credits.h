// Who made the program.
#pragma once

#include <array>
#include <span>

/// The lines of one section: its heading, then one name a line, ordered by given name. Not translated.
using CreditsSection = std::span<const char* const>;

/// The sections in the order in which they are shown.
std::array<CreditsSection, 2> CreditsSections();
