// The folder of all temporary files of a merge.
#pragma once

#include <string>

/// The cache folder, with a separator at its end: "hdrcache" below the program's folder unless redirected.
/// Composed anew at each call; it need not exist.
std::wstring CacheFolder();

/// Sends this process's temporary files to another folder, so that two processes never empty each other's.
/// At most once, and before the first use of CacheFolder (asserted). The process owns it then.
void RedirectCacheFolder(const std::wstring& sFolder);

/// Makes the cache folder this process's own, which empties it when it ends. Of the processes that share the
/// program's folder only the one that keeps the user's series may do so: another start would take the merged
/// image from it.
void OwnCacheFolder();
bool OwnsCacheFolder();

/// Creates the cache folder if it is missing, and closes it to other users. @return false if it still isn't
/// there, with errno set
bool CreateCacheFolder();

/// Deletes every file that matches "*.tmp" in a folder. A file that can't be deleted stays.
/// @param sFolder  ends in a separator; an empty text is refused
/// @return false if nothing matches
bool DeleteCacheFiles(const std::wstring& sFolder);

/// Deletes every file of the cache folder, hidden ones too; what can't be deleted, and folders in it, stay.
void EmptyCacheFolder();

/// The path of a new float cache file: the cache folder, the UTC date and the system's uptime in
/// milliseconds. Nothing checks whether the file exists.
std::wstring NewFloatCachePath();
