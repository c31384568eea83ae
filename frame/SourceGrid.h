// The grid of the source list: its columns, the two kinds of its rows, and what their cells show.
#pragma once

#include "frame/ControlRules.h"
#include "frame/SourceRecords.h"

#include <vector>

class wxGrid;
class wxWindow;

/// The columns, from the left.
enum SourceColumn { COL_ENABLED, COL_PATH, COL_SHUTTER, COL_APERTURE, COL_COMPENSATION, SOURCE_COLUMNS };

/// Rows that stand in the window before a series is loaded.
constexpr int WINDOW_ROWS = 5;

/// The grid with its columns and the rows of the empty window. Those rows have wider editors than the ones
/// that AppendSourceRow adds: a row keeps the editors that it was born with.
wxGrid* CreateSourceGrid(wxWindow* parent);

/// Adds a row at the end, whose first column is still empty. @return its number
int AppendSourceRow(wxGrid& grid);

/// Gives the check box of a row its renderer anew, switched off.
void ResetCheckBox(wxGrid& grid, int nRow);

/// Makes the cell of the path right-aligned and read-only.
void PreparePathCell(wxGrid& grid, int nRow);

/// Writes a record into a row. The numbers have six decimals.
void RefillRow(wxGrid& grid, int nRow, const lsImage& image);

/// Writes the records into the first rows.
void RefillRows(wxGrid& grid, const SourceRecords& records);

/// A number as the program writes it into a cell.
void SetNumberCell(wxGrid& grid, int nRow, int nColumn, float fValue, int nDecimals = 6);

std::vector<int> SelectedRows(const wxGrid& grid); ///< ascending
RowSelection SelectionOf(const wxGrid& grid);
