// Comparing pictures.
#pragma once

#include <wx/image.h>

#include <algorithm>
#include <cstddef>

namespace LS::Tests {

inline std::size_t ByteCount(const wxImage& image)
{
    return static_cast<std::size_t>(image.GetWidth()) * static_cast<std::size_t>(image.GetHeight()) * 3;
}

/// Whether two pictures have the same size and bytes.
inline bool SamePixels(const wxImage& a, const wxImage& b)
{
    return a.IsOk() && b.IsOk() && a.GetSize() == b.GetSize() &&
           std::equal(a.GetData(), a.GetData() + ByteCount(a), b.GetData());
}

} // namespace LS::Tests
