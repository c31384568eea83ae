// Editing and drawing in a real grid, with real keys; the texts of numbers and the place of check boxes.
#include "Widgets/GridCells.h"

#include "Widgets/CheckBoxFit.h"
#include "Widgets/NumberCell.h"
#include "tests/Widgets/WidgetTest.h"
#include "tests/support/CommaLocale.h"
#include "tests/support/Screen.h"

#include <wx/intl.h>

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

void ExpectCellTexts()
{
    const std::optional<wxString> REFUSED;
    const struct {
        const char* name;
        const char* text;
        float min, max;
        std::optional<wxString> shown;
    } cases[] = {
        {"fraction", "1/125", 0.0005F, 16, "0.0080"},
        {"lower limit, rounded up as a float", "1/2000", 0.0005F, 16, "0.0005"},
        {"below", "0.00049", 0.0005F, 16, REFUSED},
        {"above", "16.001", 0.0005F, 16, REFUSED},
        {"below a negative limit", "-5.1", -5, 5, REFUSED},
        {"comma", "1,4", 1, 64, "1.4000"},
        {"commas in a fraction", "0,5/2,5", 0, 1, "0.2000"},
        {"blanks in front", " 1/ 4", 0, 1, "0.2500"},
        {"denominator 0", "1/0", -1, 1, REFUSED},
        {"two slashes", "1/2/2", -1, 1, REFUSED},
        {"slash at the end, which is no piece", "1/2/", -1, 1, "0.5000"},
        {"empty", "", -1, 1, REFUSED},
        {"letters behind a number", "0.5s", -1, 1, REFUSED},
        {"not a number", "nan", -1, 1, REFUSED},
        {"quotient too large", "1e300/1e-300", -1, std::numeric_limits<float>::max(), REFUSED},
        {"not ASCII", "\xc2\xbd", -1, 1, REFUSED},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.shown, NumberCellText(wxString::FromUTF8(c.text), c.min, c.max));
    }
}

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
        {"above the limit", NUMBER, true, "17", BEFORE},
        {"only looked at", NUMBER, true, "", BEFORE},
        {"the first character counts", NUMBER, false, "1/3", "0.3333"},
        {"and that of a text", TEXT, false, "16", "16"},
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

TEST_F(GridCells, NumbersLookTheSameInEveryLanguage)
{
    m_grid->SetCellRenderer(0, NUMBER, new lsGridCellNumberRenderer(-1, 4));
    m_grid->SetCellValue(0, NUMBER, "0.001000");
    const wxImage before = Look();
    const CommaLocale comma;
    ASSERT_TRUE(comma.IsOk());
    const wxLocale french(wxLANGUAGE_FRENCH_FRANCE, wxLOCALE_DONT_LOAD_DEFAULT);
    EXPECT_TRUE(SamePixels(before, Look()));
    m_grid->SetCellValue(0, NUMBER, "0.002");
    EXPECT_FALSE(SamePixels(before, Look()));
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

TEST(NumberCell, TextsInEveryLocale)
{
    ExpectCellTexts();
    const CommaLocale locale;
    ASSERT_TRUE(locale.IsOk());
    ExpectCellTexts();
}

TEST(CheckBoxRect, PlacesAndShrinks)
{
    const wxSize best(16, 16);
    EXPECT_EQ(wxRect(109, 44, 14, 14), CheckBoxRect({100, 40, 30, 20}, best, wxALIGN_CENTRE));
    EXPECT_EQ(wxRect(104, 44, 14, 14), CheckBoxRect({100, 40, 30, 20}, best, wxALIGN_LEFT));
    EXPECT_EQ(wxRect(114, 44, 14, 14), CheckBoxRect({100, 40, 30, 20}, best, wxALIGN_RIGHT));
    EXPECT_EQ(wxRect(), CheckBoxRect({0, 0, 4, 20}, best, wxALIGN_CENTRE)) << "no room";
}
