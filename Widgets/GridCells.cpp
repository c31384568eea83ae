// Connects the grid with the units that read numbers and place check boxes.
#include "Widgets/GridCells.h"

#include "Widgets/CheckBoxFit.h"
#include "Widgets/NumberCell.h"

#include <wx/combobox.h>
#include <wx/dcclient.h>
#include <wx/renderer.h>

#include <algorithm>

namespace {

bool IsTicked(const wxGrid& grid, int row, int col)
{
    wxGridTableBase* const table = grid.GetTable();
    if (table->CanGetValueAs(row, col, wxGRID_VALUE_BOOL))
        return table->GetValueAsBool(row, col);
    return wxGridCellBoolEditor::IsTrueValue(table->GetValue(row, col));
}

} // namespace

wxGridCellNumChoiceEditor::wxGridCellNumChoiceEditor(int count, const wxString choices[], float a, float b,
                                                     bool allowOthers)
    : wxGridCellChoiceEditor(static_cast<std::size_t>(count), choices, allowOthers), m_max(std::max(a, b)),
      m_min(std::min(a, b))
{
}

/// Where only the list may be picked from, the base shows its first entry for a number that the list lacks,
/// and leaving the cell would then take that entry in.
void wxGridCellNumChoiceEditor::BeginEdit(int row, int col, wxGrid* grid)
{
    wxGridCellChoiceEditor::BeginEdit(row, col, grid);
    if (!m_allowOthers && Combo()->FindString(m_value) == wxNOT_FOUND)
        Combo()->SetSelection(wxNOT_FOUND);
}

bool wxGridCellNumChoiceEditor::EndEdit(int, int, const wxGrid*, const wxString& oldval, wxString* newval)
{
    // Without a selection the toolkit tells the last one as the value.
    const wxString typed = m_allowOthers ? Combo()->GetValue() : Combo()->GetStringSelection();
    if (typed == oldval)
        return false;
    const auto text = NumberCellText(typed, m_min, m_max);
    if (!text)
        return false;
    m_value = *text; // from here ApplyEdit of the base takes it into the table
    if (newval != nullptr)
        *newval = *text;
    return true;
}

wxGridCellEditor* wxGridCellNumChoiceEditor::Clone() const
{
    return new wxGridCellNumChoiceEditor(*this);
}

void lsGridCellBoolRenderer::Draw(wxGrid& grid, wxGridCellAttr& attr, wxDC& dc, const wxRect& rect, int row,
                                  int col, bool isSelected)
{
    // The base would draw its own check box as well.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): only the background is wanted
    wxGridCellRenderer::Draw(grid, attr, dc, rect, row, col, isSelected);

    int horizontal = 0;
    int vertical = 0;
    attr.GetAlignment(&horizontal, &vertical);
    const wxRect box = CheckBoxRect(rect, GetBestSize(grid, attr, dc, row, col), horizontal);
    if (box.IsEmpty())
        return;
    wxRendererNative::Get().DrawCheckBox(&grid, dc, box,
                                         IsTicked(grid, row, col) ? wxCONTROL_CHECKED : wxCONTROL_NONE);
}

wxGridCellRenderer* lsGridCellBoolRenderer::Clone() const
{
    return new lsGridCellBoolRenderer;
}
