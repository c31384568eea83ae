// The records of the source list: their order, and what removing and moving rows does to them.
#pragma once

#include "image/lsImage.h"

#include <LS/Util/Handle>

#include <vector>

#include <wx/arrstr.h>

/// One record per row of the list, in row order. The rowId of the records grows along it: that number alone
/// says where a record stands.
using SourceRecords = std::vector<LS::Util::Handle<lsImage>>;

/// Orders paths by their file names, folders playing no part; upper case sorts first.
void SortByFileName(wxArrayString& paths);

/// Where the pixels of a photograph are kept for the merge. Photographs of one name from two folders share
/// it.
wxString CacheFileOf(const wxString& path);

/// Takes away, for each path, the first record that has exactly this path.
void RemoveRecords(SourceRecords& records, const std::vector<wxString>& paths);

/// Lets each selected row change places with the row above it, from the top, so that a block moves as one.
/// @param rows  ascending; row 0 is not among them
void MoveRecordsUp(SourceRecords& records, const std::vector<int>& rows);

/// The same with the row below, from the bottom; the last row is not among them.
void MoveRecordsDown(SourceRecords& records, const std::vector<int>& rows);
