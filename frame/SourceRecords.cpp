// The records of the source list.
#include "frame/SourceRecords.h"

#include "Util/Paths.h"
#include "engine/CacheFolder.h"
#include "image/SeriesChecks.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace {

void Exchange(SourceRecords& records, int nRow1, int nRow2)
{
    auto& record1 = records[static_cast<std::size_t>(nRow1)];
    auto& record2 = records[static_cast<std::size_t>(nRow2)];
    const int nRowId = record1->GetRowId();
    record1->SetRowId(record2->GetRowId());
    record2->SetRowId(nRowId);
    std::swap(record1, record2);
}

} // namespace

void SortByFileName(wxArrayString& paths)
{
    std::vector<std::wstring> vsPaths;
    vsPaths.reserve(paths.size());
    for (const wxString& path : paths)
        vsPaths.push_back(path.ToStdWstring());
    std::stable_sort(vsPaths.begin(), vsPaths.end(), FileNameLess);
    for (std::size_t i = 0; i < vsPaths.size(); ++i)
        paths[i] = vsPaths[i];
}

wxString CacheFileOf(const wxString& path)
{
    return LS::Util::JoinPath(CacheFolder(), LS::Util::FileNameFromPath(path.ToStdWstring()) + L".tmp");
}

void RemoveRecords(SourceRecords& records, const std::vector<wxString>& paths)
{
    std::unordered_map<std::wstring, std::size_t> left; // how many records of a path are still to go
    for (const wxString& path : paths)
        ++left[path.ToStdWstring()];
    const auto goes = [&left](const LS::Util::Handle<lsImage>& record) {
        const auto found = left.find(record->GetPath().ToStdWstring());
        if (found == left.end() || found->second == 0)
            return false;
        --found->second;
        return true;
    };
    // One pass from the front, in order, which std::remove_if doesn't promise.
    SourceRecords kept;
    for (const auto& record : records)
        if (!goes(record))
            kept.push_back(record);
    records.swap(kept);
}

void MoveRecordsUp(SourceRecords& records, const std::vector<int>& rows)
{
    for (const int nRow : rows)
        Exchange(records, nRow, nRow - 1);
}

void MoveRecordsDown(SourceRecords& records, const std::vector<int>& rows)
{
    std::for_each(rows.rbegin(), rows.rend(), [&](int nRow) { Exchange(records, nRow, nRow + 1); });
}
