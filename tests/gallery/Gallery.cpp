// Which pages there are.
#include "tests/gallery/Gallery.h"

namespace LS::Gallery {

std::vector<Page> Pages()
{
    return {};
}

} // namespace LS::Gallery
