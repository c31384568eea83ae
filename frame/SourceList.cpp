// The source list of the main window: a series starts, images come and go, cells are edited.
#include "Util/FailureLog.h"
#include "Util/Paths.h"
#include "Widgets/NumberCell.h"
#include "Widgets/SashSplitter.h"
#include "Widgets/StaticPicture.h"
#include "engine/CacheFolder.h"
#include "frame/FileDialogs.h"
#include "frame/LumiStrandHDRFrm.h"
#include "frame/SourceGrid.h"
#include "image/ExifReader.h"
#include "image/FileBytes.h"
#include "image/ImageCache.h"
#include "xml/Config.h"

#include <algorithm>

#include <wx/grid.h>
#include <wx/log.h>
#include <wx/utils.h>

using LS::Util::Handle;

namespace {

/// Takes the exposure of a record from its file. What the file doesn't tell stays.
/// @return whether the whole of it was read
bool TakeExif(lsImage& image)
{
    ExposureValues values;
    std::string sReason;
    const std::string sPath = FileBytes(image.GetPath());
    const ExifOutcome outcome = ReadExif(sPath, values, &sReason);
    if (outcome == ExifOutcome::Failed) {
        LS::Util::LogFailure("reading the exposure", sPath, sReason);
        wxLogError("Exif error!");
    }
    image.SetWidth(values.width);
    image.SetHeight(values.height);
    image.SetExposureTime(values.exposureTime);
    image.SetFNumber(values.fNumber);
    image.SetExposureBias(values.exposureBias);
    return outcome == ExifOutcome::Read;
}

} // namespace

void LumiStrandHDRFrm::AddFiles(const wxArrayString& paths)
{
    if (AskToSave())
        ResetForNewSeries(paths);
}

bool LumiStrandHDRFrm::TakeDroppedFiles(const wxArrayString& paths)
{
    if (IsBusy() || paths.empty())
        return false;
    CallAfter([this, paths] {
        if (IsBusy()) // by now
            return;
        if (m_images.empty())
            AddFiles(paths);
        else
            AddImages(paths);
    });
    return true;
}

void LumiStrandHDRFrm::ResetForNewSeries(const wxArrayString& paths)
{
    const wxBusyCursor busy;
    ShowState(FrameState::SourcesLoaded);
    m_thumbnail->SetImage(nullptr);
    m_preview->SetImage(nullptr);
    ClearList();
    EmptyCacheFolder();
    AddImages(paths);
    DeleteLastRows(m_placeholderRows);
    m_placeholderRows = 0;
    if (m_grid->GetNumberRows() > 0 && !m_grid->IsSelection())
        GoToRow(0);
}

void LumiStrandHDRFrm::ClearList()
{
    m_grid->DisableCellEditControl(); // before its row gets another image
    m_placeholderRows = m_grid->GetNumberRows();
    m_grid->ClearGrid();
    m_grid->ClearSelection();
    m_images.clear();
    m_nextRowId = 0;
    m_modified = false;
    for (int nRow = 0; nRow < m_grid->GetNumberRows(); ++nRow)
        ResetCheckBox(*m_grid, nRow);
}

void LumiStrandHDRFrm::AddImages(const wxArrayString& paths)
{
    const wxBusyCursor busy;
    wxArrayString sorted = paths;
    SortByFileName(sorted);
    {
        const wxGridUpdateLocker quiet(m_grid);
        for (std::size_t i = 0; i < sorted.size(); ++i)
            AddImage(sorted[i], static_cast<int>(i));
    }
    m_grid->Refresh();
}

/// @param nPlaceholderRow  the row to take while there are rows that wait for images
void LumiStrandHDRFrm::AddImage(const wxString& path, int nPlaceholderRow)
{
    const Handle<lsImage> image = new lsImage(path, 0, 0);
    image->SetRowId(m_nextRowId++);
    m_images.push_back(image);
    int nRow = nPlaceholderRow;
    if (m_placeholderRows > 0)
        --m_placeholderRows;
    else
        nRow = AppendSourceRow(*m_grid);

    const bool bExif = TakeExif(*image.get());
    PreparePathCell(*m_grid, nRow);
    RefillRow(*m_grid, nRow, *image.get());
    if (bExif)
        SetNumberCell(*m_grid, nRow, COL_COMPENSATION, image->GetExposureBias(), 1);
    image->SetCacheFile(CacheFileOf(path));
}

void LumiStrandHDRFrm::DeleteLastRows(int nRows)
{
    if (nRows > 0)
        m_grid->DeleteRows(m_grid->GetNumberRows() - nRows, nRows);
}

/// Keeps the folder for the next question. @return false if there is no path
bool LumiStrandHDRFrm::RememberFolderOf(const wxArrayString& paths)
{
    if (paths.empty())
        return false;
    Config::Instance()->m_lastImagePath = LS::Util::FolderFromPath(paths[0].ToStdWstring());
    return true;
}

void LumiStrandHDRFrm::OnNew(wxCommandEvent&)
{
    if (!AskToSave())
        return;
    const auto paths = AskForImages(Config::Instance()->m_lastImagePath);
    if (paths && RememberFolderOf(*paths))
        ResetForNewSeries(*paths);
}

void LumiStrandHDRFrm::OnAddImage(wxCommandEvent&)
{
    const auto paths = AskForImages(Config::Instance()->m_lastImagePath);
    if (paths && RememberFolderOf(*paths))
        AddImages(*paths);
}

void LumiStrandHDRFrm::OnRemoveImage(wxCommandEvent&)
{
    m_grid->DisableCellEditControl();
    if (!m_grid->IsSelection())
        return;
    std::vector<wxString> paths;
    for (const int nRow : SelectedRows(*m_grid))
        if (static_cast<std::size_t>(nRow) < m_images.size())
            paths.push_back(m_images[static_cast<std::size_t>(nRow)]->GetPath());
    RemoveRecords(m_images, paths);
    {
        const wxGridUpdateLocker quiet(m_grid);
        RefillRows(*m_grid, m_images);
        DeleteLastRows(m_grid->GetNumberRows() - static_cast<int>(m_images.size()));
    }
    if (m_images.empty())
        m_nextRowId = 0;
    else
        GoToRow(0);
}

void LumiStrandHDRFrm::OnMoveUp(wxCommandEvent&)
{
    m_grid->DisableCellEditControl();
    const RowSelection selection = SelectionOf(*m_grid);
    if (!selection.bAny || selection.bFirst)
        return;
    const std::vector<int> rows = SelectedRows(*m_grid);
    MoveRecordsUp(m_images, rows);
    SelectMovedRows(rows, -1);
}

void LumiStrandHDRFrm::OnMoveDown(wxCommandEvent&)
{
    m_grid->DisableCellEditControl();
    const RowSelection selection = SelectionOf(*m_grid);
    if (!selection.bAny || selection.bLast)
        return;
    const std::vector<int> rows = SelectedRows(*m_grid);
    MoveRecordsDown(m_images, rows);
    SelectMovedRows(rows, 1);
}

/// Shows the records where they stand now, and lets the selection follow them.
/// @param rows  where they stood   @param nStep  1 or -1
void LumiStrandHDRFrm::SelectMovedRows(const std::vector<int>& rows, int nStep)
{
    const wxGridUpdateLocker quiet(m_grid);
    for (const int nRow : rows)
        for (const int nChanged : {nRow, nRow + nStep})
            RefillRow(*m_grid, nChanged, *m_images[static_cast<std::size_t>(nChanged)].get());
    m_grid->ClearSelection();
    {
        // Each event would decode a photograph, only for the next one to take its place.
        const wxEventBlocker quietly(m_grid, wxEVT_GRID_RANGE_SELECTED);
        for (std::size_t i = rows.size(); i > 1; --i)
            m_grid->SelectRow(rows[i - 1] + nStep, true);
    }
    m_grid->SelectRow(rows.front() + nStep, true);
    m_grid->SetGridCursor(rows.front() + nStep, std::max(m_grid->GetGridCursorCol(), 0));
}

void LumiStrandHDRFrm::OnRangeSelect(wxGridRangeSelectEvent& event)
{
    event.Skip();
    const int nRow = event.GetTopRow();
    ApplyListButtons(ListButtonsAtSelection(m_images.size(), m_grid->GetNumberRows(), nRow));
    if (!event.Selecting() || nRow < 0 || static_cast<std::size_t>(nRow) >= m_images.size())
        return;
    const wxString& path = m_images[static_cast<std::size_t>(nRow)]->GetPath();
    if (const wxImage* const image = ImageCache::Instance()->GetImage(path, false))
        m_thumbnail->SetImage(image);
}

void LumiStrandHDRFrm::OnCellChange(wxGridEvent& event)
{
    const int nRow = event.GetRow();
    if (static_cast<std::size_t>(nRow) >= m_images.size())
        return;
    const auto value = ReadNumber(m_grid->GetCellValue(nRow, event.GetCol()));
    if (!value)
        return;
    lsImage& image = *m_images[static_cast<std::size_t>(nRow)].get();
    const auto fValue = static_cast<float>(*value);
    switch (event.GetCol()) {
    case COL_SHUTTER:
        image.SetExposureTime(fValue);
        break;
    case COL_APERTURE:
        image.SetFNumber(fValue);
        break;
    case COL_COMPENSATION:
        image.SetExposureBias(fValue);
        break;
    default:
        break;
    }
}

void LumiStrandHDRFrm::OnCellLeftClick(wxGridEvent& event)
{
    event.Skip();
    if (event.GetCol() != COL_ENABLED)
        return;
    ToggleRow(event.GetRow());
    m_grid->SetGridCursor(event.GetRow(), COL_ENABLED);
}

void LumiStrandHDRFrm::ToggleRow(int nRow)
{
    if (static_cast<std::size_t>(nRow) < m_images.size())
        TickRow(nRow, !IsTicked(nRow));
}

bool LumiStrandHDRFrm::IsTicked(int nRow) const
{
    return m_grid->GetCellValue(nRow, COL_ENABLED) == "1";
}

void LumiStrandHDRFrm::TickRow(int nRow, bool bOn)
{
    m_grid->SetCellValue(nRow, COL_ENABLED, bOn ? "1" : "");
    m_images[static_cast<std::size_t>(nRow)]->SetEnabled(bOn);
}
