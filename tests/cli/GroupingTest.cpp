// Series out of lists of shots.
#include "cli/Grouping.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using Names = std::vector<std::string>;

struct Taken {
    const char* szName;
    double dSeconds;
    float fShutter;
    const char* szSource = "A";
    float fStop = 8;
};

std::vector<ShotSeries> Grouped(const std::vector<Taken>& vTaken, double dGap = 5)
{
    std::vector<Shot> vShots;
    vShots.reserve(vTaken.size());
    for (const Taken& t : vTaken)
        vShots.push_back({t.szName,
                          {t.fShutter, t.fStop},
                          std::chrono::microseconds(static_cast<std::int64_t>(t.dSeconds * 1e6)),
                          t.szSource});
    return GroupShots(vShots, dGap);
}

/// "a b c | d e": series and their files, without folders.
std::string Text(const std::vector<ShotSeries>& vSeries)
{
    std::string sText;
    for (const ShotSeries& series : vSeries) {
        sText += sText.empty() ? "" : " |";
        for (const Shot& shot : series.vShots)
            sText += (sText.empty() ? "" : " ") + shot.sPath.substr(shot.sPath.rfind('/') + 1);
    }
    return sText;
}

} // namespace

TEST(Grouping, Series)
{
    const struct {
        const char* szName;
        std::vector<Taken> vTaken;
        const char* szExpected;
        double dGap = 5;
    } cases[] = {
        {"no order of the exposures",
         {{"a", 0, 2}, {"b", 1, 1}, {"c", 2, 4}, {"d", 3, 2}, {"e", 4, 1}, {"f", 5, 4}},
         "a b c | d e f"},
        {"equal exposures are single shots", {{"a", 0, 1}, {"b", 1, 1}, {"c", 2, 1}}, "a | b | c"},
        {"a pause longer than the gap and the exposure",
         {{"a", 0, 0.5}, {"b", 1, 1}, {"c", 7.01, 0.25}, {"d", 8, 0.125}},
         "a b | c d"},
        {"a long exposure noted at its end", {{"a", 0, 0.5}, {"b", 33, 30}}, "a b"},
        {"names where times are equal, and not their folders", {{"1/b", 0, 2}, {"2/a", 0, 1}}, "a b"},
        {"another aperture is another exposure", {{"a", 0, 1, "A", 4}, {"b", 1, 1, "A", 8}}, "a b"},
        {"the user's gap", {{"a", 0, 0.25}, {"b", 1, 0.5}, {"c", 10, 0.125}}, "a b c", 8.5},
        {"no gap", {{"a", 0, 0.25}, {"b", 1, 0.5}}, "a | b", 0},
        {"the order of names among series",
         {{"z", 0, 1}, {"y", 1, 2}, {"b", 20, 1}, {"c", 21, 2}, {"m", 0, 1, "B"}},
         "b c | m | z y"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.szExpected, Text(Grouped(c.vTaken, c.dGap))) << c.szName;
}

TEST(Grouping, NamesTellTheSeriesApart)
{
    const std::pair<std::vector<Taken>, Names> cases[] = {
        // far apart, so that each is a series of its own
        {{{"d/a.jpg", 0, 1}, {"d/a.tif", 100, 1}, {"d/b.c.jpg", 200, 1}}, {"a.jpg", "a.tif", "b.c"}},
        {{{"d/a.jpg", 0, 1}, {"d/a.jpg.jpg", 100, 1}}, {"a", "a.jpg.jpg"}},
    };
    for (const auto& [vTaken, vsExpected] : cases) {
        Names vsNames;
        for (const ShotSeries& series : Grouped(vTaken))
            vsNames.push_back(series.sName);
        EXPECT_EQ(vsExpected, vsNames);
    }
}
