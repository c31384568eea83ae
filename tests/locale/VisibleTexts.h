// What a user can read in the windows of this process, the toolkit's own parts included.
#pragma once

#include <set>
#include <string>

namespace LS::Tests {

/// Titles, labels, menus, tool tips and the entries of lists of all windows that are on show now. Texts of
/// fields and the names of files are the user's own, and are left out.
std::set<std::string> VisibleTexts();

} // namespace LS::Tests
