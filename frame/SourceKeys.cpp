// The source list by keys, as lists work elsewhere: the cursor is the row that the next key starts from.
#include "frame/LumiStrandHDRFrm.h"
#include "frame/SourceGrid.h"

#include <algorithm>
#include <optional>
#include <vector>

#include <wx/grid.h>

namespace {

bool IsEnter(int nKey)
{
    return nKey == WXK_RETURN || nKey == WXK_NUMPAD_ENTER;
}

/// Moves the focus to the control before or behind the grid; the grid's parts come first in the toolkit's
/// order.
void LeaveGrid(wxGrid& grid, int nDirection)
{
    constexpr int MOST_PARTS = 8;
    for (int i = 0; i < MOST_PARTS; ++i) {
        grid.Navigate(nDirection);
        if (!grid.IsDescendant(wxWindow::FindFocus())) // which it is of itself, too
            return;
    }
}

/// Puts the cursor into another column of its row. The grid's own way there would clear the selection.
void StepColumn(wxGrid& grid, int nStep)
{
    const int nColumn = std::clamp(grid.GetGridCursorCol() + nStep, 0, grid.GetNumberCols() - 1);
    grid.SetGridCursor(grid.GetGridCursorRow(), nColumn);
}

int RowsOnAPage(wxGrid& grid)
{
    return std::max(grid.GetGridWindow()->GetClientSize().y / grid.GetDefaultRowSize() - 1, 1);
}

/// The row that a key leads to, not yet within the list; nothing for other keys.
std::optional<int> RowOfKey(wxGrid& grid, int nKey)
{
    const int nRow = grid.GetGridCursorRow();
    switch (nKey) {
    case WXK_UP:
    case WXK_NUMPAD_UP:
        return nRow - 1;
    case WXK_DOWN:
    case WXK_NUMPAD_DOWN:
        return nRow + 1;
    case WXK_PAGEUP:
    case WXK_NUMPAD_PAGEUP:
        return nRow - RowsOnAPage(grid);
    case WXK_PAGEDOWN:
    case WXK_NUMPAD_PAGEDOWN:
        return nRow + RowsOnAPage(grid);
    case WXK_HOME:
    case WXK_NUMPAD_HOME:
        return 0;
    case WXK_END:
    case WXK_NUMPAD_END:
        return grid.GetNumberRows() - 1;
    default:
        return std::nullopt;
    }
}

/// Where an extended selection began: the far end of the block at whose other end the cursor stands.
int AnchorOf(const wxGrid& grid)
{
    const int nRow = grid.GetGridCursorRow();
    for (const wxGridBlockCoords& block : grid.GetSelectedRowBlocks()) {
        if (nRow == block.GetTopRow())
            return block.GetBottomRow();
        if (nRow == block.GetBottomRow())
            return block.GetTopRow();
    }
    return nRow;
}

} // namespace

/// Selects this row alone, and goes on from there.
void LumiStrandHDRFrm::GoToRow(int nRow)
{
    m_grid->SetGridCursor(nRow, std::max(m_grid->GetGridCursorCol(), 0));
    m_grid->SelectRow(nRow, false);
}

void LumiStrandHDRFrm::ExtendSelectionTo(int nRow)
{
    const auto [nTop, nBottom] = std::minmax({AnchorOf(*m_grid), nRow});
    m_grid->SetGridCursor(nRow, m_grid->GetGridCursorCol());
    m_grid->SelectBlock(nTop, 0, nBottom, SOURCE_COLUMNS - 1, false);
}

/// Ticks the selected rows, or unticks them if all are ticked; without a selection the row of the cursor.
void LumiStrandHDRFrm::ToggleSelectedRows()
{
    std::vector<int> rows = SelectedRows(*m_grid);
    if (rows.empty())
        rows.push_back(m_grid->GetGridCursorRow());
    const bool bOn = !std::ranges::all_of(rows, [this](int nRow) { return IsTicked(nRow); });
    for (const int nRow : rows)
        TickRow(nRow, bOn);
}

/// @return whether the key was one that leads to another row or column
bool LumiStrandHDRFrm::NavigateRows(const wxKeyEvent& event)
{
    const int nKey = event.GetKeyCode();
    if (const auto nAim = RowOfKey(*m_grid, nKey)) {
        const int nRow = std::clamp(*nAim, 0, m_grid->GetNumberRows() - 1);
        if (event.ShiftDown())
            ExtendSelectionTo(nRow);
        else
            GoToRow(nRow);
        return true;
    }
    const bool bLeft = nKey == WXK_LEFT || nKey == WXK_NUMPAD_LEFT;
    if (!bLeft && nKey != WXK_RIGHT && nKey != WXK_NUMPAD_RIGHT)
        return false;
    StepColumn(*m_grid, bLeft ? -1 : 1);
    return true;
}

/// @return whether the key was one that does something with the selected rows or the cell of the cursor
bool LumiStrandHDRFrm::RunListKey(const wxKeyEvent& event)
{
    const int nKey = event.GetKeyCode();
    if (nKey == 'A' && event.GetModifiers() == wxMOD_CONTROL) {
        m_grid->SelectAll();
        return true;
    }
    if (event.HasAnyModifiers())
        return false;
    if (nKey == WXK_SPACE) {
        ToggleSelectedRows();
    } else if (nKey == WXK_DELETE || nKey == WXK_NUMPAD_DELETE) {
        wxCommandEvent remove;
        OnRemoveImage(remove);
    } else if (IsEnter(nKey)) {
        if (m_grid->CanEnableCellControl())
            m_grid->EnableCellEditControl();
    } else {
        return false;
    }
    return true;
}

/// Keeps what was typed and goes on to the next row, or with Tab to the next column.
void LumiStrandHDRFrm::LeaveCellEditor(const wxKeyEvent& event)
{
    m_grid->DisableCellEditControl();
    if (!IsEnter(event.GetKeyCode()))
        StepColumn(*m_grid, event.ShiftDown() ? -1 : 1);
    else
        GoToRow(std::min(m_grid->GetGridCursorRow() + 1, m_grid->GetNumberRows() - 1));
}

/// Tab leaves the list at once: it would go through the cells otherwise, and lose the selected rows that the
/// buttons work on.
void LumiStrandHDRFrm::OnGridKey(wxKeyEvent& event)
{
    const int nKey = event.GetKeyCode();
    const bool bTab = nKey == WXK_TAB;
    const bool bEditing = m_grid->IsCellEditControlShown(); // which keeps most keys to itself
    const bool bOurs = !event.AltDown() && m_grid->GetGridCursorRow() >= 0;
    if (bOurs && bEditing && (bTab || IsEnter(nKey)))
        LeaveCellEditor(event);
    else if (bOurs && !bEditing && bTab && !event.HasModifiers())
        LeaveGrid(*m_grid,
                  event.ShiftDown() ? wxNavigationKeyEvent::IsBackward : wxNavigationKeyEvent::IsForward);
    else if (!bOurs || bEditing || (!NavigateRows(event) && !RunListKey(event)))
        event.Skip();
}
