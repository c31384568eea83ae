// What the cells of the source list are edited and drawn with.
#pragma once

#include <wx/grid.h>

/// The library's drop-down list, where free text is allowed with two things that it lacks: the character that
/// opens it counts, and its text is shown from the beginning, selected as a whole.
class lsGridCellChoiceEditor : public wxGridCellChoiceEditor {
public:
    using wxGridCellChoiceEditor::wxGridCellChoiceEditor;

    void BeginEdit(int row, int col, wxGrid* grid) override;
    void StartingKey(wxKeyEvent& event) override;
    wxGridCellEditor* Clone() const override;
};

/// A drop-down list for numbers. The text that is picked or typed may be a number or a fraction such as
/// "1/125"; the cell receives its value with four decimals. A text that is no number within the limits leaves
/// the cell as it was and sends no event.
class wxGridCellNumChoiceEditor : public lsGridCellChoiceEditor {
public:
    /// @param a, b         the limits, both included, in either order
    /// @param allowOthers  whether other texts than those of the list may be typed
    wxGridCellNumChoiceEditor(int count, const wxString choices[], float a, float b, bool allowOthers);
    wxGridCellNumChoiceEditor(const wxGridCellNumChoiceEditor& other) = default;

    void BeginEdit(int row, int col, wxGrid* grid) override;
    void Reset() override;
    bool EndEdit(int row, int col, const wxGrid* grid, const wxString& oldval, wxString* newval) override;
    wxGridCellEditor* Clone() const override;

private:
    void ShowOnlyOwnValue();

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

/// Draws numbers with a point in every locale, as the cells hold them: the library's own renderer reads and
/// writes them as the user's locale does, and takes the point for a separator of thousands.
class lsGridCellNumberRenderer : public wxGridCellFloatRenderer {
public:
    using wxGridCellFloatRenderer::wxGridCellFloatRenderer;

    void Draw(wxGrid& grid, wxGridCellAttr& attr, wxDC& dc, const wxRect& rect, int row, int col,
              bool isSelected) override;
    wxGridCellRenderer* Clone() const override;
};
