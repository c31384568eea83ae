// Which pages there are.
#include "tests/gallery/Gallery.h"

#include <iterator>

namespace LS::Gallery {

std::vector<Page> ComparePages();
std::vector<Page> AboutPages();
std::vector<Page> PicturesPages();
std::vector<Page> CellsPages();
std::vector<Page> ProgressPages();
std::vector<Page> SavePages();

std::vector<Page> Pages()
{
    std::vector<Page> pages;
    for (auto* topic : {
             ComparePages,
             AboutPages,
             PicturesPages,
             CellsPages,
             ProgressPages,
             SavePages,
         }) {
        auto more = topic();
        std::move(more.begin(), more.end(), std::back_inserter(pages));
    }
    return pages;
}

} // namespace LS::Gallery
