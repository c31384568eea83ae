// The names in the credits.
#include "app/Credits.h"

namespace {

constexpr std::array DEVELOPERS = {
    "Developers:",       "Anneke Vosbergh", "Dario Lenzani",      "Ilse Kortmann",
    "Matthieu Delorval", "Rowena Askelby",  "Tomasz Wierchowicz",
};

constexpr std::array MARKETING = {
    "Marketing:",      "Beatriz Almorante",  "Callum Dunwithie", "Esther Rosental", "Giulia Ferranzo",
    "Henrik Solbakke", "Mireille Castagnol", "Oskar Lindqvall",  "Yuki Tanabara",
};

} // namespace

std::array<CreditsSection, 2> CreditsSections()
{
    return {DEVELOPERS, MARKETING};
}
