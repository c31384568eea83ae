// Comparing pictures.
#pragma once

#include <wx/image.h>

#include <cstring>

namespace LS::Tests {

/// Whether two pictures have the same size and bytes.
inline bool SamePixels(const wxImage& a, const wxImage& b)
{
    return a.IsOk() && b.IsOk() && a.GetSize() == b.GetSize() &&
           std::memcmp(a.GetData(), b.GetData(),
                       3 * std::size_t(a.GetWidth()) * std::size_t(a.GetHeight())) == 0;
}

} // namespace LS::Tests
