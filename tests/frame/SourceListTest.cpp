// The source list against a model of it, and what its rows take from photographs, editors and clicks.
#include "tests/frame/FrameFixture.h"

#include "Util/Numbers.h"
#include "Widgets/GridCells.h"
#include "Widgets/StaticPicture.h"
#include "Widgets/lsRadioButton.h"
#include "frame/SourceGrid.h"
#include "tests/cli/Photographs.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Screen.h"

#include <gmock/gmock.h>
#include <wx/image.h>
#include <wx/uiaction.h>

#include <algorithm>
#include <filesystem>
#include <random>

using namespace LS::Tests;
using testing::Each;
using testing::ElementsAre;

namespace {

struct ModelRow {
    std::string sPath;
    bool bTicked = true;
    float values[3]{};                        // shutter, aperture, compensation
    std::string sTick = "1", texts[3] = {{}}; // what the cells show

    void Rewrite()
    {
        sTick = bTicked ? "1" : "0";
        for (int i = 0; i < 3; ++i)
            texts[i] = LS::Util::FormatFixed(static_cast<double>(values[i]), 6);
    }
};

/// What the list is to hold, by the simplest means.
class ListModel {
public:
    explicit ListModel(std::map<std::string, ModelRow> photographs) : m_photographs(std::move(photographs)) {}

    void New(const std::vector<std::string>& vsPaths)
    {
        m_rows.clear();
        Add(vsPaths);
        m_wideRows.resize(m_rows.size());
    }

    void Add(std::vector<std::string> vsPaths)
    {
        std::stable_sort(vsPaths.begin(), vsPaths.end(), [](const auto& a, const auto& b) {
            return std::filesystem::path(a).filename() < std::filesystem::path(b).filename();
        });
        for (const std::string& sPath : vsPaths)
            m_rows.push_back(m_photographs.at(sPath));
        m_wideRows.resize(std::max(m_wideRows.size(), m_rows.size()), false);
    }

    void Remove(const std::vector<int>& rows)
    {
        if (rows.empty())
            return;
        std::vector<std::string> vsPaths;
        vsPaths.reserve(rows.size());
        for (const int nRow : rows)
            vsPaths.push_back(Row(nRow).sPath);
        for (const std::string& sPath : vsPaths)
            m_rows.erase(std::find_if(m_rows.begin(), m_rows.end(),
                                      [&](const ModelRow& row) { return row.sPath == sPath; }));
        for (ModelRow& row : m_rows)
            row.Rewrite();
        m_wideRows.resize(m_rows.size());
    }

    /// @param nStep  -1 or 1
    void Move(std::vector<int> rows, int nStep)
    {
        if (nStep > 0)
            std::reverse(rows.begin(), rows.end());
        for (const int nRow : rows) {
            std::swap(Row(nRow), Row(nRow + nStep));
            Row(nRow).Rewrite();
            Row(nRow + nStep).Rewrite();
        }
    }

    void Click(int nRow)
    {
        ModelRow& row = Row(nRow);
        row.bTicked = !row.bTicked;
        row.sTick = row.bTicked ? "1" : "";
    }

    /// @param sText  a number from the list of the column
    void Edit(int nRow, int nColumn, const std::string& sText)
    {
        ModelRow& row = Row(nRow);
        const auto dValue = LS::Util::ParseFraction(sText).value();
        const bool bWide = m_wideRows[static_cast<std::size_t>(nRow)];
        const bool bNumberEditor = bWide || nColumn == COL_SHUTTER;
        if (nColumn == COL_SHUTTER && !bWide && dValue > 1)
            return;
        std::string& sCell = row.texts[nColumn - COL_SHUTTER];
        sCell = bNumberEditor ? LS::Util::FormatFixed(dValue, 4) : sText;
        row.values[nColumn - COL_SHUTTER] = static_cast<float>(LS::Util::ParseNumber(sCell).value());
    }

    int Rows() const { return static_cast<int>(m_rows.size()); }
    const ModelRow& Row(int nRow) const { return m_rows.at(static_cast<std::size_t>(nRow)); }
    bool IsWide(int nRow) const { return m_wideRows.at(static_cast<std::size_t>(nRow)); }

private:
    ModelRow& Row(int nRow) { return m_rows.at(static_cast<std::size_t>(nRow)); }

    std::map<std::string, ModelRow> m_photographs; // as each looks when it was just added
    std::vector<ModelRow> m_rows;
    std::vector<bool> m_wideRows = std::vector<bool>(WINDOW_ROWS, true); // rows born with the window
};

class SourceList : public FrameTest {
protected:
    void Drop(const std::vector<std::string>& vsPaths)
    {
        EXPECT_TRUE(m_frame->TakeDroppedFiles(Paths(vsPaths)));
        Pump(2);
    }

    void Select(const std::vector<int>& rows)
    {
        Grid().ClearSelection();
        for (const int nRow : rows)
            Grid().SelectRow(nRow, true);
    }

    std::string Photo(const std::string& sName, const std::map<std::string, std::string>& tags = {},
                      wxSize size = wxSize(8, 6)) const
    {
        std::string sPath = m_folder.File(sName);
        Photograph photograph;
        photograph.width = size.x;
        photograph.height = size.y;
        WritePhotograph(sPath, photograph);
        SetExif(sPath, tags);
        return sPath;
    }

    std::vector<std::string> Names() const
    {
        std::vector<std::string> vsNames = Column(COL_PATH);
        for (std::string& sName : vsNames)
            sName = std::filesystem::path(sName).filename();
        return vsNames;
    }

    void ExpectEqual(const ListModel& model)
    {
        wxGrid& grid = Grid();
        ASSERT_EQ(model.Rows(), grid.GetNumberRows());
        for (int nRow = 0; nRow < model.Rows(); ++nRow) {
            const ModelRow& row = model.Row(nRow);
            EXPECT_EQ(row.sTick, grid.GetCellValue(nRow, COL_ENABLED)) << "row " << nRow;
            EXPECT_EQ(row.sPath, grid.GetCellValue(nRow, COL_PATH)) << "row " << nRow;
            for (int i = 0; i < 3; ++i)
                EXPECT_EQ(row.texts[i], grid.GetCellValue(nRow, COL_SHUTTER + i).utf8_string())
                    << "row " << nRow << ", number " << i;
            const wxGridCellEditorPtr editor(grid.GetCellEditor(nRow, COL_APERTURE));
            EXPECT_EQ(model.IsWide(nRow), dynamic_cast<wxGridCellNumChoiceEditor*>(editor.get()) != nullptr)
                << "row " << nRow;
        }
    }
};

const std::map<std::string, std::string> FULL_EXIF{{"Exif.Photo.PixelXDimension", "8"},
                                                   {"Exif.Photo.PixelYDimension", "6"},
                                                   {"Exif.Photo.ExposureTime", "1/125"},
                                                   {"Exif.Photo.FNumber", "56/10"},
                                                   {"Exif.Photo.ExposureBiasValue", "-1/3"}};

} // namespace

TEST_F(SourceList, EqualsItsModelThroughRandomOperations)
{
    const std::string sOther = m_folder.File("other");
    std::filesystem::create_directory(sOther);
    std::map<std::string, ModelRow> photographs;
    const auto add = [&](const std::string& sPath, float fShutter, float fAperture, float fBias,
                         int nBiasDecimals) {
        ModelRow row{sPath, true, {fShutter, fAperture, fBias}};
        row.Rewrite();
        row.texts[2] = LS::Util::FormatFixed(static_cast<double>(fBias), nBiasDecimals);
        photographs[sPath] = row;
    };
    add(Photo("full.jpg", FULL_EXIF), 0.008F, 5.6F, -1 / 3.0F, 1);
    add(Photo("other/full.jpg", {{"Exif.Photo.FNumber", "4/1"}}), -1, 4, -1, 1);
    add(Photo("B.jpg"), 1 / 60.0F, 14, 0, 6);
    add(Photo("c.jpg", {{"Exif.Photo.ExposureTime", "2/1"}}), 2, -1, -1, 1);
    add(m_folder.File("missing.jpg"), 1 / 60.0F, 14, 0, 6);
    std::vector<std::string> vsAll;
    vsAll.reserve(photographs.size());
    for (const auto& photograph : photographs)
        vsAll.push_back(photograph.first);

    std::mt19937 random(7);
    const auto below = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    const auto somePaths = [&](int nMost) {
        std::vector<std::string> vsPaths;
        for (int i = below(nMost) + 1; i > 0; --i)
            vsPaths.push_back(vsAll[static_cast<std::size_t>(below(static_cast<int>(vsAll.size())))]);
        return vsPaths;
    };
    const ModalAnswer missing([](wxDialog&) { return wxID_OK; });
    ListModel model(photographs);
    std::vector<std::string> vsFirst = somePaths(8);
    Load(vsFirst);
    model.New(vsFirst);

    constexpr int STEPS = 100;
    for (int nStep = 0; nStep < STEPS && !HasFailure(); ++nStep) {
        const int nOperation = below(12);
        SCOPED_TRACE(testing::Message() << "step " << nStep << ", operation " << nOperation);
        std::vector<int> rows;
        for (int nRow = 0; nRow < model.Rows(); ++nRow)
            if (below(3) == 0)
                rows.push_back(nRow);
        const int nRow = model.Rows() > 0 ? below(model.Rows()) : -1;
        if (nOperation == 0) {
            const auto vsPaths = somePaths(8);
            Load(vsPaths);
            model.New(vsPaths);
        } else if (nOperation <= 3) {
            const auto vsPaths = somePaths(3);
            Drop(vsPaths);
            if (model.Rows() > 0)
                model.Add(vsPaths);
            else
                model.New(vsPaths);
        } else if (nOperation <= 5) {
            Select(rows);
            Press(wxID_REPLACE);
            model.Remove(rows);
        } else if (nOperation <= 9) {
            const bool bUp = nOperation <= 7;
            Select(rows);
            Press(bUp ? wxID_UP : wxID_DOWN);
            const int nEdge = bUp ? 0 : model.Rows() - 1;
            if (std::find(rows.begin(), rows.end(), nEdge) == rows.end()) {
                model.Move(rows, bUp ? -1 : 1);
                for (int& nMoved : rows)
                    nMoved += bUp ? -1 : 1;
            }
            EXPECT_EQ(rows, SelectedRows(Grid())) << "the selection follows";
        } else if (nRow >= 0 && nOperation == 10) {
            ClickCell(nRow, COL_ENABLED);
            model.Click(nRow);
        } else if (nRow >= 0) {
            const int nColumn = COL_SHUTTER + below(3);
            const char* const texts[][3] = {{"1/2000", "1/60", "2/1"}, {"1", "5.6", "64"}, {"-5", "0", "3"}};
            const char* const szText = texts[nColumn - COL_SHUTTER][below(3)];
            EditCell(nRow, nColumn, szText);
            model.Edit(nRow, nColumn, szText);
        }
        ExpectEqual(model);
    }
}

TEST_F(SourceList, ASeriesStartsSortedSelectedAndWithItsFirstPicture)
{
    Load({Photo("b.jpg"), Photo("C.jpg"), Photo("a.jpg")});
    EXPECT_THAT(Names(), ElementsAre("C.jpg", "a.jpg", "b.jpg"));
    EXPECT_THAT(Column(COL_ENABLED), Each("1"));
    EXPECT_THAT(SelectedRows(Grid()), ElementsAre(0));
    Load({Photo("z.jpg")});
    EXPECT_THAT(Names(), ElementsAre("z.jpg"));
}

TEST_F(SourceList, ExifFillsTheCells)
{
    struct Case {
        const char* szName;
        std::map<std::string, std::string> tags;
        std::vector<std::string> vsNumbers;
    };
    const Case cases[] = {
        {"all tags", FULL_EXIF, {"0.008000", "5.600000", "-0.3"}},
        {"no Exif", {}, {"0.016667", "14.000000", "0.000000"}},
        {"no aperture",
         {{"Exif.Photo.ExposureTime", "1/4"}, {"Exif.Photo.ExposureBiasValue", "0/1"}},
         {"0.250000", "-1.000000", "0.0"}},
        {"other tags only", {{"Exif.Image.Make", "Lumistrand"}}, {"-1.000000", "-1.000000", "-1.0"}},
    };
    std::vector<std::string> vsPaths;
    for (const Case& c : cases)
        vsPaths.push_back(Photo(std::to_string(vsPaths.size()) + ".jpg", c.tags));
    Load(vsPaths);
    int nRow = 0;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szName);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(c.vsNumbers[static_cast<std::size_t>(i)], Grid().GetCellValue(nRow, COL_SHUTTER + i));
        ++nRow;
    }
}

TEST_F(SourceList, AFileWithoutReadableExifIsLoggedAndStays)
{
    const ModalAnswer message([](wxDialog&) { return wxID_OK; });
    WriteText(m_folder.File("junk.jpg"), "no picture");
    const LogRecorder log;
    Load({m_folder.File("junk.jpg"), m_folder.File("missing.jpg"), Photo("z.jpg", FULL_EXIF)});
    EXPECT_EQ(2, std::count(log.Lines().begin(), log.Lines().end(), "Exif error!"));
    EXPECT_THAT(Column(COL_SHUTTER), ElementsAre("0.016667", "0.016667", "0.008000"));
}

TEST_F(SourceList, NumberCellsTakeWhatTheirEditorsTake)
{
    std::vector<std::string> vsPaths(7);
    for (std::size_t i = 0; i < vsPaths.size(); ++i)
        vsPaths[i] = Photo(std::to_string(i) + ".jpg");
    Load(vsPaths);
    struct Case {
        const char* szWhat;
        int nRow, nColumn;
        const char *szText, *szCell;
        const char* szRecord; ///< as a rewritten row tells it
    };
    const Case cases[] = {
        {"typed fraction", 0, COL_SHUTTER, "1/3", "0.3333", "0.333300"},
        {"long time in a row of the window", 1, COL_SHUTTER, "2/1", "2.0000", "2.000000"},
        {"upper limit", 2, COL_SHUTTER, "16", "16.0000", "16.000000"},
        {"above the limit", 3, COL_SHUTTER, "17", "0.016667", "0.016667"},
        {"not a number", 4, COL_SHUTTER, "nan", "0.016667", "0.016667"},
        {"long time in an appended row", 5, COL_SHUTTER, "2/1", "0.016667", "0.016667"},
        {"short time in an appended row", 6, COL_SHUTTER, "1/2000", "0.0005", "0.000500"},
        {"decimal comma", 0, COL_APERTURE, "5,6", "5.6000", "5.600000"},
        {"aperture above the limit", 1, COL_APERTURE, "65", "14.000000", "14.000000"},
        {"appended, comma", 5, COL_APERTURE, "5,6", "5,6", "5.600000"},
        {"appended, letters", 6, COL_APERTURE, "open", "open", "14.000000"},
        {"appended, not a number", 6, COL_COMPENSATION, "nan", "nan", "0.000000"},
        {"appended, beyond the list", 5, COL_COMPENSATION, "-7.5", "-7.5", "-7.500000"},
        {"compensation", 0, COL_COMPENSATION, "-5", "-5.0000", "-5.000000"},
        {"compensation below the limit", 1, COL_COMPENSATION, "-6", "0.000000", "0.000000"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szWhat);
        EditCell(c.nRow, c.nColumn, c.szText);
        EXPECT_EQ(c.szCell, Grid().GetCellValue(c.nRow, c.nColumn));
    }
    for (const int nRow : {0, 4, 5, 6}) {
        Grid().SetGridCursor(nRow, COL_SHUTTER);
        Grid().EnableCellEditControl();
        const wxGridCellEditorPtr editor(Grid().GetCellEditor(nRow, COL_SHUTTER));
        EXPECT_EQ(nRow >= WINDOW_ROWS, editor->GetControl()->HasFlag(wxCB_READONLY)) << "row " << nRow;
        Grid().DisableCellEditControl(); // left as it was
    }
    // A move there and back writes the rows anew, from the records.
    Select({1, 2, 3, 4, 5, 6});
    Press(wxID_UP);
    Press(wxID_DOWN);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szWhat);
        EXPECT_EQ(c.szRecord, Grid().GetCellValue(c.nRow, c.nColumn));
    }
}

TEST_F(SourceList, ACellIsEditedWithTheKeyboard)
{
    Load({Photo("a.jpg"), Photo("b.jpg")});
    Grid().SetFocus();
    Grid().SetGridCursor(1, COL_SHUTTER);
    wxUIActionSimulator keyboard;
    keyboard.Char(WXK_F2);
    Pump();
    keyboard.Char('A', wxMOD_CONTROL);
    keyboard.Text("1/3");
    Pump();
    keyboard.Char(WXK_RETURN);
    Pump();
    EXPECT_EQ("0.3333", Grid().GetCellValue(1, COL_SHUTTER));
}

TEST_F(SourceList, CheckBoxesFollowMouseAndSpace)
{
    Load({Photo("a.jpg"), Photo("b.jpg"), Photo("c.jpg")});
    wxGrid& grid = Grid();
    const auto click = [&](int nRow) {
        const wxRect cell = grid.CellToRect(nRow, COL_ENABLED);
        Click(*grid.GetGridWindow(), cell.GetPosition() + wxPoint(cell.width / 2, cell.height / 2));
    };
    click(1);
    EXPECT_THAT(Column(COL_ENABLED), ElementsAre("1", "", "1"));
    EXPECT_EQ(1, grid.GetGridCursorRow());
    EXPECT_THAT(SelectedRows(grid), ElementsAre(1)) << "a click also selects";
    wxUIActionSimulator().Char(WXK_SPACE);
    Pump();
    EXPECT_THAT(Column(COL_ENABLED), Each("1"));
    EXPECT_FALSE(grid.IsCellEditControlEnabled());
    wxUIActionSimulator().Char(WXK_SPACE);
    Pump();
    EXPECT_THAT(Column(COL_ENABLED), ElementsAre("1", "", "1"));

    // An unticked row stays so where records are moved and removed.
    Select({1});
    Press(wxID_UP);
    EXPECT_THAT(Column(COL_ENABLED), ElementsAre("0", "1", "1"));
    Select({1});
    Press(wxID_REPLACE);
    EXPECT_THAT(Column(COL_ENABLED), ElementsAre("0", "1"));
}

TEST_F(SourceList, TheSelectedRowShowsItsPhotograph)
{
    const wxSize size(96, 64); // smaller than the control, so that pixels compare
    const std::string sFirst = Photo("a.jpg", {}, size), sSecond = m_folder.File("b.jpg");
    WritePhotograph(sSecond, {3, "1/15", "8/1", size.x, size.y});
    Load({sFirst, sSecond});
    const auto shows = [&](const std::string& sPath) {
        return SamePixels(wxImage(wxString::FromUTF8(sPath)), Shown(Thumbnail(), size));
    };
    EXPECT_TRUE(shows(sFirst));
    Grid().SelectRow(1, false);
    EXPECT_TRUE(shows(sSecond));
    Select({0, 1});
    Press(wxID_REPLACE);
    EXPECT_EQ(0, Grid().GetNumberRows());
    EXPECT_TRUE(shows(sSecond)) << "the last picture stays when the list is empty";
    Load({sFirst});
    EXPECT_TRUE(shows(sFirst));
}

TEST_F(SourceList, PhotographsThatCannotBeShownAreTold)
{
    const std::string sMissing = m_folder.File("missing 100%s.jpg"), sJunk = m_folder.File("junk.jpg");
    WriteText(sJunk, "no picture");
    Load({Photo("a.jpg"), sMissing, sJunk});
    {
        const ExpectedBoxes boxes({ErrorBox(wxString::FromUTF8(sMissing) + " Is Not Exist, Please Check!")});
        Grid().SelectRow(2, false); // sorted: a, junk, missing
    }
    const ExpectedBoxes boxes({ErrorBox("#0001002 Failed to open file. Can not find the file.")});
    Grid().SelectRow(1, false);
    EXPECT_EQ(3, Grid().GetNumberRows());
}

TEST_F(SourceList, AMoveLooksOnlyAtThePhotographThatItShows)
{
    const std::string sMissing = m_folder.File("m.jpg");
    Load({Photo("a.jpg"), sMissing, m_folder.File("n.jpg")});
    {
        const ModalAnswer missing([](wxDialog&) { return wxID_OK; });
        Select({1, 2});
    }
    const ExpectedBoxes boxes({ErrorBox(wxString::FromUTF8(sMissing) + " Is Not Exist, Please Check!")});
    Press(wxID_UP);
    EXPECT_THAT(SelectedRows(Grid()), ElementsAre(0, 1));
    EXPECT_FALSE(Find<LS::Widgets::lsRadioButton>(wxID_UP).IsEnabled());
    EXPECT_TRUE(Find<LS::Widgets::lsRadioButton>(wxID_DOWN).IsEnabled());
}

TEST_F(SourceList, RemovingEverythingLeavesOnlyAdd)
{
    Load({Photo("a.jpg"), Photo("b.jpg")});
    Select({0, 1});
    Press(wxID_REPLACE);
    EXPECT_EQ(0, Grid().GetNumberRows());
    Pump();
    for (const int nId : {wxID_REPLACE, wxID_UP, wxID_DOWN})
        EXPECT_FALSE(Find<LS::Widgets::lsRadioButton>(nId).IsEnabled());
    EXPECT_TRUE(Find<LS::Widgets::lsRadioButton>(wxID_ADD).IsEnabled());
    EXPECT_TRUE(IsOn(ID_CREATE_HDR));
    const ExpectedBoxes none({});
    Command(ID_CREATE_HDR);
    EXPECT_FALSE(IsOn(wxID_SAVE));

    AddByDialog(m_folder.File("a.jpg"));
    EditCell(0, COL_SHUTTER, "2/1");
    EXPECT_EQ("0.016667", Grid().GetCellValue(0, COL_SHUTTER)) << "an appended row";
}

TEST_F(SourceList, DroppedFilesStartOrExtendASeries)
{
    EXPECT_FALSE(m_frame->TakeDroppedFiles({}));
    Drop({Photo("b.jpg"), Photo("a.jpg")});
    EXPECT_THAT(Names(), ElementsAre("a.jpg", "b.jpg"));
    EXPECT_TRUE(IsOn(ID_CREATE_HDR));
    Drop({Photo("0.jpg")});
    EXPECT_THAT(Names(), ElementsAre("a.jpg", "b.jpg", "0.jpg"));
}

TEST_F(SourceList, QuestionsForFilesThatAreCancelledChangeNothing)
{
    Load({Photo("a.jpg")});
    const ModalAnswer cancel(ChooseFile("", 0));
    Command(wxID_NEW);
    Press(wxID_ADD);
    EXPECT_THAT(Names(), ElementsAre("a.jpg"));
}
