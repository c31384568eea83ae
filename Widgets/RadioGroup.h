// Which neighbours a radio button switches off.
#pragma once

#include <cstddef>
#include <vector>

namespace LS::Widgets {

/// How a button takes part in groups; the flags may be combined.
struct GroupRole {
    bool bPush = false;   ///< belongs to no group and ends those beside it
    bool bGroup = false;  ///< begins a group
    bool bToggle = false; ///< begins a group as seen from the buttons behind it
};

/// The buttons to switch off when one of a row is switched on, in the order of their clearing: first those
/// before it, nearest first, then those behind it. A push button switches off none.
/// @param vRow    the image buttons among the children of one parent, in their order
/// @param nButton index of the button that was switched on
std::vector<std::size_t> ButtonsToClear(const std::vector<GroupRole>& vRow, std::size_t nButton);

} // namespace LS::Widgets
