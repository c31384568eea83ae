// Editing and drawing in a real grid.
#include "Widgets/GridCells.h"

#include "tests/support/CommaLocale.h"
#include "tests/support/Gui.h"
#include "tests/support/Screen.h"

#include <gtest/gtest.h>
#include <wx/combobox.h>
#include <wx/dcmemory.h>
#include <wx/frame.h>
#include <wx/intl.h>
#include <wx/uiaction.h>

#include <functional>
#include <memory>

using namespace LS::Tests;

namespace {

const wxString SHUTTERS[] = {"1/2000", "1/125", "1/2", "2/1"};

class GridCells : public testing::Test {
protected:
    GridCells()
    {
        m_grid->CreateGrid(2, 3);
        m_grid->SetCellEditor(0, 1, new wxGridCellNumChoiceEditor(4, SHUTTERS, 16, 0.0005F, true));
        m_grid->SetCellEditor(1, 1, new wxGridCellNumChoiceEditor(4, SHUTTERS, -1, 1, false));
        for (int row = 0; row < 2; ++row)
            m_grid->SetCellValue(row, 1, "0.016667");
        m_grid->Bind(wxEVT_GRID_CELL_CHANGING, [this](wxGridEvent& event) { Note("changing to ", event); });
        m_grid->Bind(wxEVT_GRID_CELL_CHANGED, [this](wxGridEvent& event) { Note("changed from ", event); });
        ShowAndWait(*m_frame);
    }
    ~GridCells() override { delete m_frame; }

    void Note(const wxString& what, wxGridEvent& event)
    {
        m_events += what + event.GetString() + ", cell " +
                    m_grid->GetCellValue(event.GetRow(), event.GetCol()) + "\n";
    }

    // Opens the editor of a row, lets the caller do something with its box, and closes it.
    void Edit(int row, const std::function<void(wxComboBox& box)>& action)
    {
        m_events.clear();
        m_grid->SetGridCursor(row, 1);
        m_grid->EnableCellEditControl();
        Pump();
        wxGridCellEditor* const editor = m_grid->GetCellEditor(row, 1);
        auto* const box = dynamic_cast<wxComboBox*>(editor->GetControl());
        editor->DecRef();
        ASSERT_NE(nullptr, box);
        action(*box);
        Pump();
        m_grid->DisableCellEditControl();
        Pump();
    }

    void EditAndExpect()
    {
        const struct {
            const char* name;
            int row;
            const char *before, *typed, *after;
        } cases[] = {
            {"fraction", 0, "0.016667", "1/125", "0.0080"},
            {"lower limit", 0, "0.016667", "1/2000", "0.0005"},
            {"comma", 0, "0.016667", "0,25", "0.2500"},
            {"letters", 0, "0.016667", "fast", "0.016667"},
            {"not a number", 0, "0.016667", "nan", "0.016667"},
            {"above the limit", 0, "0.016667", "17", "0.016667"},
            {"empty", 0, "0.016667", "", "0.016667"},
            {"unchanged", 0, "0.5", "0.5", "0.5"},
            {"an empty cell", 0, "", "1/2", "0.5000"},
            {"from the list", 1, "0.016667", "1/125", "0.0080"},
            {"from the list, above the limit", 1, "0.016667", "2/1", "0.016667"},
            {"the first entry of the list", 1, "0.016667", "1/2000", "0.0005"},
            {"nothing picked", 1, "0.016667", "", "0.016667"},
            {"the entry that the cell has", 1, "1/2", "1/2", "1/2"},
        };
        for (const auto& c : cases) {
            SCOPED_TRACE(c.name);
            m_grid->SetCellValue(c.row, 1, c.before);
            Edit(c.row, [&](wxComboBox& box) {
                if (c.row == 1)
                    box.SetStringSelection(c.typed);
                else
                    box.SetValue(c.typed);
            });
            EXPECT_EQ(c.after, m_grid->GetCellValue(c.row, 1));
            const wxString before = c.before;
            const wxString after = c.after;
            const wxString expected = before == after
                                          ? wxString()
                                          : "changing to " + after + ", cell " + before + "\nchanged from " +
                                                before + ", cell " + after + "\n";
            EXPECT_EQ(expected, m_events);
        }
    }

    wxFrame* m_frame = new wxFrame(nullptr, wxID_ANY, "grid", wxDefaultPosition, {500, 300});
    wxGrid* m_grid = new wxGrid(m_frame, wxID_ANY);
    wxString m_events;
};

} // namespace

TEST_F(GridCells, NumberEditorReadsFractions)
{
    EditAndExpect();
}

TEST_F(GridCells, NumberEditorAsksNoLocale)
{
    const CommaLocale locale;
    ASSERT_TRUE(locale.IsOk());
    EditAndExpect();
}

TEST_F(GridCells, ACellThatWasOnlyLookedAtKeepsItsValue)
{
    for (const int row : {0, 1}) { // with free text, and with the list alone
        m_grid->SetCellValue(row, 1, "0.016667");
        Edit(row, [](const wxComboBox&) {});
        EXPECT_EQ("0.016667", m_grid->GetCellValue(row, 1));
        EXPECT_EQ("", m_events);
        Edit(row, [](wxComboBox& box) { box.SetSelection(0); });
        EXPECT_EQ("0.0005", m_grid->GetCellValue(row, 1)) << "the first entry can be picked all the same";
    }
}

TEST_F(GridCells, EditorsWithTheKeyboard)
{
    m_grid->SetCellEditor(0, 2, new lsGridCellChoiceEditor(4, SHUTTERS, true));
    m_grid->SetFocus();
    Pump(20);
    wxUIActionSimulator simulator;
    struct Case {
        const char* szWhat;
        int nRow, nColumn;
        bool bF2; ///< opens the editor; else the first character does
        const char *szTyped, *szAfter;
    };
    const Case cases[] = {
        {"over the text that is there", 0, 1, true, "1/4", "0.2500"},
        {"no number", 0, 1, true, "x/4", "0.002857"},
        {"the first character counts", 0, 1, false, "16", "16.0000"},
        {"of a fraction too", 0, 1, false, "1/3", "0.3333"},
        {"and that of a text", 0, 2, false, "16", "16"},
        {"a list without free text", 1, 1, false, "16", "0.002857"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szWhat);
        m_grid->SetCellValue(c.nRow, c.nColumn, "0.002857");
        m_grid->SetGridCursor(c.nRow, c.nColumn);
        if (c.bF2) {
            simulator.Char(WXK_F2);
            Pump(20);
            const wxGridCellEditorPtr editor(m_grid->GetCellEditor(c.nRow, c.nColumn));
            EXPECT_EQ(0, dynamic_cast<wxComboBox&>(*editor->GetControl()).GetInsertionPoint())
                << "the beginning is what is shown";
        }
        simulator.Text(c.szTyped);
        Pump(20);
        simulator.Char(WXK_RETURN);
        Pump(20);
        EXPECT_EQ(c.szAfter, m_grid->GetCellValue(c.nRow, c.nColumn));
    }
}

TEST_F(GridCells, NumbersAreDrawnTheSameInEveryLanguage)
{
    m_grid->RegisterDataType(wxGRID_VALUE_FLOAT, new lsGridCellNumberRenderer, new wxGridCellFloatEditor);
    m_grid->SetColFormatFloat(1, -1, 4);
    m_grid->SetCellValue(0, 1, "0.001000");
    const auto drawn = [this] {
        m_grid->ForceRefresh();
        Pump();
        return Screenshot(*m_grid->GetGridWindow());
    };
    const wxImage before = drawn();
    const CommaLocale comma;
    ASSERT_TRUE(comma.IsOk());
    const wxLocale french(wxLANGUAGE_FRENCH_FRANCE, wxLOCALE_DONT_LOAD_DEFAULT);
    EXPECT_TRUE(SamePixels(before, drawn()));
    m_grid->SetCellValue(0, 1, "0.002");
    EXPECT_FALSE(SamePixels(before, drawn()));
}

TEST_F(GridCells, VetoLeavesTheCell)
{
    m_grid->Bind(wxEVT_GRID_CELL_CHANGING, [](wxGridEvent& event) { event.Veto(); });
    Edit(0, [](wxComboBox& box) { box.SetValue("1/4"); });
    EXPECT_EQ("0.016667", m_grid->GetCellValue(0, 1));
}

TEST_F(GridCells, ClonesAreWhole)
{
    const wxGridCellEditorPtr plain(new lsGridCellChoiceEditor(4, SHUTTERS, true));
    const wxGridCellEditorPtr copy(plain->Clone());
    EXPECT_NE(nullptr, dynamic_cast<lsGridCellChoiceEditor*>(copy.get()));

    wxGridCellEditor* const editor = m_grid->GetCellEditor(1, 1);
    m_grid->SetCellEditor(0, 1, editor->Clone());
    editor->DecRef();
    Edit(0, [](wxComboBox& box) {
        EXPECT_EQ(4U, box.GetCount());
        EXPECT_FALSE(box.IsEditable());
        box.SetStringSelection("2/1");
    });
    EXPECT_EQ("0.016667", m_grid->GetCellValue(0, 1)) << "the limit came along";
    Edit(0, [](wxComboBox& box) { box.SetStringSelection("1/2"); });
    EXPECT_EQ("0.5000", m_grid->GetCellValue(0, 1));

    lsGridCellBoolRenderer* const renderer = new lsGridCellBoolRenderer;
    wxGridCellRenderer* const clone = renderer->Clone();
    EXPECT_NE(nullptr, dynamic_cast<lsGridCellBoolRenderer*>(clone));
    clone->DecRef();
    renderer->DecRef();
}

namespace {

// Draws cell (0, 0) into a picture, with white around it.
class DrawnCell {
public:
    DrawnCell(wxGrid& grid, wxRect cell)
    {
        wxBitmap bitmap(60, 60);
        wxMemoryDC dc(bitmap);
        dc.SetBackground(*wxWHITE_BRUSH);
        dc.Clear();
        wxGridCellAttr* const attr = grid.GetOrCreateCellAttr(0, 0);
        wxGridCellRenderer* const renderer = grid.GetCellRenderer(0, 0);
        renderer->Draw(grid, *attr, dc, cell, 0, 0, false);
        renderer->DecRef();
        attr->DecRef();
        dc.SelectObject(wxNullBitmap);
        m_image = bitmap.ConvertToImage();
    }

    bool operator==(const DrawnCell& other) const
    {
        const std::size_t bytes = static_cast<std::size_t>(m_image.GetWidth()) * m_image.GetHeight() * 3;
        return std::equal(m_image.GetData(), m_image.GetData() + bytes, other.m_image.GetData());
    }

    // The bounds of all that isn't white.
    wxRect Inked() const
    {
        wxRect area;
        for (int y = 0; y < m_image.GetHeight(); ++y)
            for (int x = 0; x < m_image.GetWidth(); ++x)
                if (m_image.GetRed(x, y) + m_image.GetGreen(x, y) + m_image.GetBlue(x, y) < 3 * 255)
                    area.Union(wxRect(x, y, 1, 1));
        return area;
    }

private:
    wxImage m_image;
};

} // namespace

TEST_F(GridCells, CheckBoxShowsTheValue)
{
    m_grid->SetCellRenderer(0, 0, new lsGridCellBoolRenderer);
    m_grid->SetCellAlignment(0, 0, wxALIGN_CENTRE, wxALIGN_CENTRE);
    const auto drawn = [&](const char* value) {
        m_grid->SetCellValue(0, 0, value);
        return DrawnCell(*m_grid, {10, 10, 30, 20});
    };
    EXPECT_FALSE(drawn("") == drawn("1"));
    EXPECT_TRUE(drawn("") == drawn("0"));
}

TEST_F(GridCells, CheckBoxStaysInItsCell)
{
    m_grid->SetCellRenderer(0, 0, new lsGridCellBoolRenderer);
    m_grid->SetCellValue(0, 0, "1");
    for (const int alignment : {wxALIGN_LEFT, wxALIGN_CENTRE, wxALIGN_RIGHT})
        for (const wxRect cell : {wxRect(10, 10, 30, 20), wxRect(10, 10, 40, 12), wxRect(10, 10, 12, 40),
                                  wxRect(10, 10, 6, 6), wxRect(10, 10, 3, 3)}) {
            m_grid->SetCellAlignment(0, 0, alignment, wxALIGN_CENTRE);
            const wxRect inked = DrawnCell(*m_grid, cell).Inked();
            EXPECT_TRUE(inked.IsEmpty() || cell.Contains(inked))
                << alignment << ": " << inked.x << ' ' << inked.y << ' ' << inked.width << ' '
                << inked.height;
            EXPECT_EQ(cell.width < 5, inked.IsEmpty());
        }
}
