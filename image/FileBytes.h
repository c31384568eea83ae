// Paths of the window library as the file system's bytes.
#pragma once

#include "Util/Paths.h"

#include <string>

#include <wx/string.h>

/// What a path is called by the C library and all others, whatever the locale.
inline std::string FileBytes(const wxString& path)
{
    return LS::Util::NarrowPath(path.ToStdWstring());
}
