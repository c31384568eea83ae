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

void lsGridCellChoiceEditor::BeginEdit(int row, int col, wxGrid* grid)
{
    wxGridCellChoiceEditor::BeginEdit(row, col, grid);
    if (Combo()->IsEditable())
        Combo()->SelectAll(); // which leaves the cursor at the beginning
}

void lsGridCellChoiceEditor::StartingKey(wxKeyEvent& event)
{
    if (!Combo()->IsEditable()) {
        event.Skip();
        return;
    }
    const wxChar typed = event.GetUnicodeKey();
    const bool bText = typed >= WXK_SPACE && typed != WXK_DELETE;
    Combo()->SetValue(bText ? wxString(typed) : wxString());
    Combo()->SetInsertionPointEnd();
}

wxGridCellEditor* lsGridCellChoiceEditor::Clone() const
{
    return new lsGridCellChoiceEditor(*this);
}

wxGridCellNumChoiceEditor::wxGridCellNumChoiceEditor(int count, const wxString choices[], float a, float b,
                                                     bool allowOthers)
    : lsGridCellChoiceEditor(static_cast<std::size_t>(count), choices, allowOthers), m_max(std::max(a, b)),
      m_min(std::min(a, b))
{
}

void wxGridCellNumChoiceEditor::BeginEdit(int row, int col, wxGrid* grid)
{
    lsGridCellChoiceEditor::BeginEdit(row, col, grid);
    ShowOnlyOwnValue();
}

void wxGridCellNumChoiceEditor::Reset()
{
    wxGridCellChoiceEditor::Reset();
    ShowOnlyOwnValue();
}

/// For a value that the list lacks the base shows the first entry, and a cell that was only looked at would
/// take it.
void wxGridCellNumChoiceEditor::ShowOnlyOwnValue()
{
    if (Combo()->GetValue() == m_value)
        return;
    Combo()->SetSelection(wxNOT_FOUND);
    Combo()->wxTextEntry::ChangeValue(wxEmptyString); // GTK leaves the text, and its own call refuses
}

bool wxGridCellNumChoiceEditor::EndEdit(int, int, const wxGrid*, const wxString& oldval, wxString* newval)
{
    const wxString typed = Combo()->GetValue();
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

void lsGridCellNumberRenderer::Draw(wxGrid& grid, wxGridCellAttr& attr, wxDC& dc, const wxRect& rect, int row,
                                    int col, bool isSelected)
{
    // The base would draw its own text as well.
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): only the background is wanted
    wxGridCellRenderer::Draw(grid, attr, dc, rect, row, col, isSelected);
    SetTextColoursAndFont(grid, attr, dc, isSelected);
    int horizontal = wxALIGN_RIGHT;
    int vertical = wxALIGN_INVALID;
    attr.GetNonDefaultAlignment(&horizontal, &vertical);
    wxRect area = rect;
    grid.DrawTextRectangle(dc, ShownNumber(grid.GetCellValue(row, col), GetPrecision()), area.Inflate(-1),
                           horizontal, vertical);
}

wxGridCellRenderer* lsGridCellNumberRenderer::Clone() const
{
    return new lsGridCellNumberRenderer(GetWidth(), GetPrecision());
}
