// Which photographs belong together, by what their files tell.
#include "cli/Grouping.h"

#include "Util/Paths.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <tuple>

namespace fs = std::filesystem;

namespace {

bool NameLess(const Shot& a, const Shot& b)
{
    return FileNameLess(LS::Util::WidePath(a.sPath), LS::Util::WidePath(b.sPath));
}

bool TakenBefore(const Shot& a, const Shot& b)
{
    if (std::tie(a.sSource, a.taken) != std::tie(b.sSource, b.taken))
        return std::tie(a.sSource, a.taken) < std::tie(b.sSource, b.taken);
    return NameLess(a, b);
}

double PauseBetween(const Shot& earlier, const Shot& later)
{
    const std::chrono::duration<double> seconds = later.taken - earlier.taken;
    const float fLonger = std::max(earlier.exposure.exposureTime, later.exposure.exposureTime);
    return seconds.count() - static_cast<double>(fLonger);
}

bool HasExposure(const std::vector<Shot>& vShots, const Shot& shot)
{
    return std::any_of(vShots.begin(), vShots.end(), [&shot](const Shot& other) {
        const ExposureSetting pair[] = {other.exposure, shot.exposure};
        return FindEqualExposures(pair).has_value();
    });
}

bool Continues(const std::vector<Shot>& vShots, const Shot& next, double dGap)
{
    return vShots.back().sSource == next.sSource && PauseBetween(vShots.back(), next) <= dGap &&
           !HasExposure(vShots, next);
}

/// Names without their extensions, where these tell the series apart.
void NameSeries(std::vector<ShotSeries>& vSeries)
{
    std::map<std::string, int> stems;
    std::set<std::string> fullNames;
    for (const ShotSeries& series : vSeries) {
        const fs::path path(series.vShots.front().sPath);
        ++stems[path.stem().native()];
        fullNames.insert(path.filename().native());
    }
    for (ShotSeries& series : vSeries) {
        const fs::path path(series.vShots.front().sPath);
        const std::string sStem = path.stem().native();
        const bool bIsUnique = stems[sStem] == 1 && !fullNames.contains(sStem);
        series.sName = bIsUnique ? sStem : path.filename().native();
    }
}

} // namespace

std::vector<ShotSeries> GroupShots(std::vector<Shot> vShots, double dGap)
{
    std::sort(vShots.begin(), vShots.end(), TakenBefore);
    std::vector<ShotSeries> vSeries;
    for (Shot& shot : vShots) {
        if (vSeries.empty() || !Continues(vSeries.back().vShots, shot, dGap))
            vSeries.emplace_back();
        vSeries.back().vShots.push_back(std::move(shot));
    }
    std::sort(vSeries.begin(), vSeries.end(), [](const ShotSeries& a, const ShotSeries& b) {
        return NameLess(a.vShots.front(), b.vShots.front());
    });
    NameSeries(vSeries);
    return vSeries;
}
