// Editing and drawing in a real grid, with real keys; the texts of numbers.
#include "Widgets/GridCells.h"

#include "Widgets/NumberCell.h"
#include "tests/Widgets/WidgetTest.h"
#include "tests/support/Pixels.h"

using namespace LS::Tests;

namespace {

constexpr int TEXT = 0, NUMBER = 1, LISTED = 2; // columns: any text, any number, numbers of a list
constexpr const char* BEFORE = "0.002857";

class GridCells : public WidgetTest {
protected:
    GridCells()
    {
        const wxString entries[] = {"1/2000", "1/125", "1/2", "2/1"};
        m_grid->CreateGrid(2, 3);
        m_grid->SetCellEditor(0, TEXT, new lsGridCellChoiceEditor(4, entries, true));
        m_grid->SetCellEditor(0, NUMBER, new wxGridCellNumChoiceEditor(4, entries, 16, 0.0005F, true));
        m_grid->SetCellEditor(0, LISTED, new wxGridCellNumChoiceEditor(4, entries, -1, 1, false));
        m_grid->SetFocus();
        Pump(20);
    }

    wxImage Look()
    {
        m_grid->ForceRefresh();
        Pump();
        return Screenshot(*m_grid->GetGridWindow());
    }

    wxGrid* m_grid = new wxGrid(m_panel, wxID_ANY, wxPoint(0, 0), wxSize(450, 200));
};

} // namespace

TEST_F(GridCells, AreEditedWithKeys)
{
    const struct {
        const char* szWhat;
        int nColumn;
        bool bF2; ///< opens the editor; else the first character does
        const char *szTyped, *szAfter;
    } cases[] = {
        {"over the text that is there", NUMBER, true, "1/4", "0.2500"},
        {"no number", NUMBER, true, "x/4", BEFORE},
        {"only looked at", NUMBER, true, "", BEFORE},
        {"the first character counts", NUMBER, false, "1/3", "0.3333"},
        {"a list without free text", LISTED, false, "16", BEFORE},
        {"a list that was only looked at", LISTED, true, "", BEFORE},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szWhat);
        m_grid->SetCellValue(0, c.nColumn, BEFORE);
        m_grid->SetGridCursor(0, c.nColumn);
        if (c.bF2)
            TypeKey(WXK_F2);
        wxUIActionSimulator().Text(c.szTyped);
        Pump(20);
        TypeKey(WXK_RETURN);
        EXPECT_EQ(c.szAfter, m_grid->GetCellValue(0, c.nColumn));
    }
}

TEST_F(GridCells, CheckBoxShowsTheValue)
{
    m_grid->SetCellRenderer(0, TEXT, new lsGridCellBoolRenderer);
    const wxImage empty = Look();
    m_grid->SetCellValue(0, TEXT, "1");
    EXPECT_FALSE(SamePixels(empty, Look()));
    m_grid->SetCellValue(0, TEXT, "0");
    EXPECT_TRUE(SamePixels(empty, Look()));
}

TEST(NumberCell, TextsThatAreKeptOrRefused)
{
    const std::optional<wxString> REFUSED;
    const struct {
        const char* szText;
        float fMin, fMax;
        std::optional<wxString> shown;
    } cases[] = {
        {"1/2000", 0.0005F, 16, "0.0005"}, // the limit, rounded up as a float
        {"0.00049", 0.0005F, 16, REFUSED}, {"16.001", 0.0005F, 16, REFUSED}, {"1,4", 1, 64, "1.4000"},
        {" 1/ 4", 0, 1, "0.2500"},         {"1/0", -1, 1, REFUSED},          {"0.5s", -1, 1, REFUSED},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.shown, NumberCellText(c.szText, c.fMin, c.fMax)) << c.szText;
}
