// Walks both ways from a button until its group ends.
#include "Widgets/RadioGroup.h"

namespace LS::Widgets {

std::vector<std::size_t> ButtonsToClear(const std::vector<GroupRole>& vRow, std::size_t nButton)
{
    std::vector<std::size_t> vCleared;
    const GroupRole& own = vRow[nButton];
    if (own.bPush)
        return vCleared;

    for (std::size_t i = nButton; i-- > 0 && !own.bGroup && !vRow[i].bPush;) {
        vCleared.push_back(i);
        if (vRow[i].bGroup || vRow[i].bToggle)
            break;
    }
    for (std::size_t i = nButton + 1; i < vRow.size(); ++i) {
        if (vRow[i].bGroup || vRow[i].bPush || vRow[i].bToggle)
            break;
        vCleared.push_back(i);
    }
    return vCleared;
}

} // namespace LS::Widgets
