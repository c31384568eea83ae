// Paths in the two forms that the program meets: wide text, and the file system's bytes.
#pragma once

#include <string>
#include <string_view>

namespace LS::Util {

/// The file system's bytes of a wide path: UTF-8, whatever the locale.
std::string NarrowPath(std::wstring_view sPath);

/// The wide form of a path in the file system's bytes. Bytes that are no UTF-8 become the code points
/// U+DC80 to U+DCFF, which NarrowPath turns back, so that any file name survives the round trip.
std::wstring WidePath(std::string_view sPath);

/// Folder and name with exactly one separator between them; an empty folder gives the name alone.
std::wstring JoinPath(std::wstring_view sFolder, std::wstring_view sName);

/// What stands behind the last separator.
std::wstring FileNameFromPath(std::wstring_view sPath);

/// What stands before the last separator; empty without one, the root for a file in the root.
std::wstring FolderFromPath(std::wstring_view sPath);

/// The folder of the running executable, without a separator at its end. All of the program's own files
/// lie below it. Asked anew at each call.
std::wstring ProgramFolder();

} // namespace LS::Util
