// What the cells of the source list are edited and drawn with.
#pragma once

#include <wx/grid.h>

/// A drop-down list for numbers. The text that is picked or typed may be a number or a fraction such as
/// "1/125"; the cell receives its value with four decimals. A text that is no number within the limits leaves
/// the cell as it was and sends no event, and so does an edit that is left without a choice.
class wxGridCellNumChoiceEditor : public wxGridCellChoiceEditor {
public:
    /// @param a, b         the limits, both included, in either order
    /// @param allowOthers  whether other texts than those of the list may be typed
    wxGridCellNumChoiceEditor(int count, const wxString choices[], float a, float b, bool allowOthers);
    wxGridCellNumChoiceEditor(const wxGridCellNumChoiceEditor& other) = default;

    void BeginEdit(int row, int col, wxGrid* grid) override;
    bool EndEdit(int row, int col, const wxGrid* grid, const wxString& oldval, wxString* newval) override;
    wxGridCellEditor* Clone() const override;

private:
    float m_max;
    float m_min;
};

/// Draws the platform's own check box, with a margin, where the attribute of the cell aligns it.
class lsGridCellBoolRenderer : public wxGridCellBoolRenderer {
public:
    void Draw(wxGrid& grid, wxGridCellAttr& attr, wxDC& dc, const wxRect& rect, int row, int col,
              bool isSelected) override;
    wxGridCellRenderer* Clone() const override;
};
