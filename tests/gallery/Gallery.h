// The pages of the gallery: each shows one control or dialog in its states.
#pragma once

#include <wx/toplevel.h>

#include <string>
#include <vector>

namespace LS::Gallery {

/// A page: its name on the command line, and what makes its window. The window owns itself, as wx has it.
struct Page {
    std::string name;
    wxTopLevelWindow* (*create)();
};

/// Every page, in the order in which screenshots are taken.
std::vector<Page> Pages();

} // namespace LS::Gallery
