// Columns, editors and cells of the source list.
#include "frame/SourceGrid.h"

#include "Util/Numbers.h"
#include "Widgets/GridCells.h"

#include <array>
#include <span>

#include <wx/grid.h>
#include <wx/intl.h>
#include <wx/settings.h>

namespace {

const std::array<wxString, 15> SHUTTERS{"1/2000", "1/1000", "1/500", "1/250", "1/125", "1/60", "1/30", "1/15",
                                        "1/8",    "1/4",    "1/2",   "2/1",   "4/1",   "8/1",  "16/1"};
const std::array<wxString, 13> APERTURES{"1",  "1.4", "2",  "2.8", "4",  "5.6", "8",
                                         "11", "16",  "22", "32",  "45", "64"};
const std::array<wxString, 11> COMPENSATIONS{"-5", "-4", "-3", "-2", "-1", "0", "1", "2", "3", "4", "5"};

wxGridCellEditor* NumberEditor(std::span<const wxString> entries, float fMin, float fMax, bool bFreeText)
{
    return new wxGridCellNumChoiceEditor(static_cast<int>(entries.size()), entries.data(), fMin, fMax,
                                         bFreeText);
}

wxGridCellEditor* TextEditor(std::span<const wxString> entries)
{
    return new lsGridCellChoiceEditor(entries.size(), entries.data(), true);
}

void SetUpCheckBoxCell(wxGrid& grid, int nRow)
{
    grid.SetCellAlignment(nRow, COL_ENABLED, wxALIGN_CENTRE, wxALIGN_CENTRE);
    grid.SetCellRenderer(nRow, COL_ENABLED, new lsGridCellBoolRenderer);
    grid.SetCellEditor(nRow, COL_ENABLED, new wxGridCellBoolEditor);
}

void SetUpFirstCell(wxGrid& grid, int nRow)
{
    SetUpCheckBoxCell(grid, nRow);
    grid.SetReadOnly(nRow, COL_ENABLED);
}

void SetUpWindowRow(wxGrid& grid, int nRow)
{
    SetUpFirstCell(grid, nRow);
    grid.SetCellEditor(nRow, COL_SHUTTER, NumberEditor(SHUTTERS, 0.0005F, 16.0F, true));
    grid.SetCellEditor(nRow, COL_APERTURE, NumberEditor(APERTURES, 1.0F, 64.0F, true));
    grid.SetCellEditor(nRow, COL_COMPENSATION, NumberEditor(COMPENSATIONS, -5.0F, 5.0F, true));
}

void SetUpColumns(wxGrid& grid)
{
    struct Column {
        wxString label;
        int nWidth;
    };
    const std::array<Column, SOURCE_COLUMNS> columns{{{"", 30},
                                                      {wxGetTranslation("File Name"), 205},
                                                      {wxGetTranslation("Shutter"), 100},
                                                      {wxGetTranslation("Aperture"), 100},
                                                      {wxGetTranslation("Exposure Compensation"), 150}}};
    grid.SetDefaultColSize(140);
    grid.SetDefaultRowSize(20);
    for (int i = 0; i < SOURCE_COLUMNS; ++i) {
        grid.SetColLabelValue(i, columns[static_cast<std::size_t>(i)].label);
        grid.SetColSize(i, columns[static_cast<std::size_t>(i)].nWidth);
    }
    grid.RegisterDataType(wxGRID_VALUE_FLOAT, new lsGridCellNumberRenderer, new wxGridCellFloatEditor);
    grid.SetColFormatBool(COL_ENABLED);
    grid.SetColFormatFloat(COL_SHUTTER, -1, 4);
    grid.SetColFormatFloat(COL_APERTURE, -1, 1);
    grid.SetColFormatFloat(COL_COMPENSATION, -1, 1);
}

void SetUpFonts(wxGrid& grid)
{
    wxFont cells = grid.GetDefaultCellFont();
    cells.SetPixelSize(wxSize(0, 16));
    grid.SetDefaultCellFont(cells);
    wxFont labels = grid.GetLabelFont();
    labels.SetWeight(wxFONTWEIGHT_NORMAL);
    labels.SetPixelSize(wxSize(0, 16)); // as the cells: the longest label just fits its column
    grid.SetLabelFont(labels);
}

/// The library draws the text of selected cells white also where the grid has no focus, on light grey then.
void SetUpSelection(wxGrid& grid)
{
    constexpr double STRENGTH = 0.45;
    const wxColour highlight = wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHT);
    const wxColour window = wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW);
    grid.SetSelectionBackground(wxColour(wxColour::AlphaBlend(highlight.Red(), window.Red(), STRENGTH),
                                         wxColour::AlphaBlend(highlight.Green(), window.Green(), STRENGTH),
                                         wxColour::AlphaBlend(highlight.Blue(), window.Blue(), STRENGTH)));
    grid.SetSelectionForeground(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT));
}

/// Hands the focus on to the window of the cells: only that one shows it, but the toolkit's own Tab stops at
/// the frame around it.
void PassFocusToCells(wxFocusEvent& event)
{
    event.Skip();
    auto* const grid = dynamic_cast<wxGrid*>(event.GetEventObject());
    if (!grid)
        return; // the cells have it
    grid->CallAfter([grid] {
        if (grid->HasFocus()) // which it hasn't while Tab leaves it again
            grid->GetGridWindow()->SetFocus();
    });
}

} // namespace

wxGrid* CreateSourceGrid(wxWindow* parent)
{
    auto* const grid = new wxGrid(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                  wxVSCROLL | wxHSCROLL | wxBORDER_SUNKEN, "grid");
    grid->CreateGrid(WINDOW_ROWS, SOURCE_COLUMNS, wxGrid::wxGridSelectRows);
    grid->HideRowLabels();
    SetUpFonts(*grid);
    SetUpSelection(*grid);
    SetUpColumns(*grid);
    grid->SetDefaultCellAlignment(wxALIGN_LEFT, wxALIGN_CENTRE);
    grid->SetDefaultCellOverflow(false);
    for (int nRow = 0; nRow < WINDOW_ROWS; ++nRow)
        SetUpWindowRow(*grid, nRow);
    grid->Bind(wxEVT_SET_FOCUS, PassFocusToCells);
    return grid;
}

int AppendSourceRow(wxGrid& grid)
{
    grid.AppendRows(1);
    const int nRow = grid.GetNumberRows() - 1;
    SetUpFirstCell(grid, nRow);
    grid.SetCellEditor(nRow, COL_SHUTTER, NumberEditor(SHUTTERS, -1.0F, 1.0F, false));
    grid.SetCellEditor(nRow, COL_APERTURE, TextEditor(APERTURES));
    grid.SetCellEditor(nRow, COL_COMPENSATION, TextEditor(COMPENSATIONS));
    return nRow;
}

void ResetCheckBox(wxGrid& grid, int nRow)
{
    SetUpCheckBoxCell(grid, nRow);
    grid.SetCellValue(nRow, COL_ENABLED, "0");
}

void SetNumberCell(wxGrid& grid, int nRow, int nColumn, float fValue, int nDecimals)
{
    grid.SetCellValue(nRow, nColumn, LS::Util::FormatFixed(static_cast<double>(fValue), nDecimals));
}

void PreparePathCell(wxGrid& grid, int nRow)
{
    grid.SetReadOnly(nRow, COL_PATH);
    grid.SetCellAlignment(nRow, COL_PATH, wxALIGN_RIGHT, wxALIGN_CENTRE);
}

void RefillRow(wxGrid& grid, int nRow, const lsImage& image)
{
    grid.SetCellValue(nRow, COL_ENABLED, image.IsEnabled() ? "1" : "0");
    grid.SetCellValue(nRow, COL_PATH, image.GetPath());
    SetNumberCell(grid, nRow, COL_SHUTTER, image.GetExposureTime());
    SetNumberCell(grid, nRow, COL_APERTURE, image.GetFNumber());
    SetNumberCell(grid, nRow, COL_COMPENSATION, image.GetExposureBias());
}

void RefillRows(wxGrid& grid, const SourceRecords& records)
{
    int nRow = 0;
    for (const auto& record : records)
        RefillRow(grid, nRow++, *record.get());
}

std::vector<int> SelectedRows(const wxGrid& grid)
{
    std::vector<int> rows;
    for (int nRow = 0; nRow < grid.GetNumberRows(); ++nRow)
        if (grid.IsInSelection(nRow, 0))
            rows.push_back(nRow);
    return rows;
}

RowSelection SelectionOf(const wxGrid& grid)
{
    const int nRows = grid.GetNumberRows();
    if (nRows == 0 || !grid.IsSelection())
        return {};
    return {true, grid.IsInSelection(0, 0), grid.IsInSelection(nRows - 1, 0)};
}
