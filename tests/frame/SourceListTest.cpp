// The source list against a model of it, and what it reports of photographs that can't be read.
#include "tests/frame/FrameFixture.h"

#include "Util/Numbers.h"
#include "frame/SourceGrid.h"
#include "tests/cli/Photographs.h"
#include "tests/support/LogRecorder.h"

#include <algorithm>
#include <filesystem>
#include <random>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

struct Row {
    std::string sPath;
    float values[3]; ///< shutter, aperture, compensation
    bool bTicked = true;
};

/// Each operation is done to the list, and to a model by the simplest means.
class SourceList : public FrameTest {
protected:
    void Add(std::vector<Row> added, bool bNewSeries)
    {
        std::vector<std::string> vsPaths;
        for (const Row& row : added)
            vsPaths.push_back(row.sPath);
        if (bNewSeries)
            Load(vsPaths);
        EXPECT_TRUE(bNewSeries || m_frame->TakeDroppedFiles(Paths(vsPaths)));
        Pump(2);
        std::ranges::stable_sort(added, {}, [](const Row& row) { return fs::path(row.sPath).filename(); });
        if (bNewSeries)
            m_model.clear();
        m_model.insert(m_model.end(), added.begin(), added.end());
    }

    /// For each of the rows the first one of its photograph goes.
    void Remove(const std::vector<int>& rows)
    {
        Press(wxID_REPLACE);
        std::vector<std::string> vsPaths;
        for (const int nRow : rows)
            vsPaths.push_back(ModelRow(nRow).sPath);
        for (const std::string& sPath : vsPaths)
            m_model.erase(std::ranges::find(m_model, sPath, &Row::sPath));
    }

    /// @param nStep  -1 or 1
    void Move(std::vector<int> rows, int nStep)
    {
        Press(nStep < 0 ? wxID_UP : wxID_DOWN);
        if (std::ranges::count(rows, nStep < 0 ? 0 : Size() - 1) > 0)
            return;
        if (nStep > 0)
            std::ranges::reverse(rows);
        for (int& nRow : rows) {
            std::swap(ModelRow(nRow), ModelRow(nRow + nStep));
            nRow += nStep;
        }
        std::ranges::sort(rows);
        EXPECT_EQ(rows, SelectedRows(Grid())) << "the selection follows";
    }

    void ExpectEqual()
    {
        ASSERT_EQ(Size(), Grid().GetNumberRows());
        for (int nRow = 0; nRow < Size(); ++nRow) {
            SCOPED_TRACE(ModelRow(nRow).sPath + " in row " + std::to_string(nRow));
            EXPECT_EQ(ModelRow(nRow).bTicked, Grid().GetCellValue(nRow, COL_ENABLED) == "1");
            EXPECT_EQ(ModelRow(nRow).sPath, Grid().GetCellValue(nRow, COL_PATH));
            for (int i = 0; i < 3; ++i) {
                const std::string sCell = Grid().GetCellValue(nRow, COL_SHUTTER + i).utf8_string();
                EXPECT_NEAR(ModelRow(nRow).values[i], LS::Util::ParseFraction(sCell).value(), 1E-4);
            }
        }
    }

    Row& ModelRow(int nRow) { return m_model.begin()[nRow]; }
    int Size() const { return static_cast<int>(m_model.size()); }

    std::vector<Row> m_model;
};

} // namespace

TEST_F(SourceList, EqualsItsModelThroughRandomOperations)
{
    fs::create_directory(m_folder.File("other"));
    const std::vector<Row> photographs{
        {m_folder.File("full.jpg"), {0.008F, 5.6F, -1}},
        {m_folder.File("other/full.jpg"), {-1, 4, -1}},
        {m_folder.File("B.jpg"), {2, -1, -1}},
        {m_folder.File("missing.jpg"), {1 / 60.0F, 14, 0}},
    };
    WritePhotograph(photographs[0].sPath, {1, "1/125", "56/10"});
    WritePhotograph(photographs[1].sPath, {1, std::nullopt, "4/1"});
    WritePhotograph(photographs[2].sPath, {1, "2/1", std::nullopt});
    const ModalAnswer missing([](wxDialog&) { return wxID_OK; });

    std::mt19937 random(7);
    const auto below = [&random](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    constexpr int STEPS = 100;
    for (int nStep = 0; nStep < STEPS && !HasFailure(); ++nStep) {
        const int nOperation = nStep == 0 ? 0 : below(12);
        SCOPED_TRACE(testing::Message() << "step " << nStep << ", operation " << nOperation);
        std::vector<int> rows;
        for (int nRow = 0; nRow < Size(); ++nRow)
            if (below(3) == 0)
                rows.push_back(nRow);
        Select(rows);
        if (nOperation <= 3 || Size() == 0) {
            std::vector<Row> added;
            for (int i = below(nOperation == 0 ? 8 : 3); i >= 0; --i)
                added.push_back(photographs.begin()[below(4)]);
            Add(added, nOperation == 0);
        } else if (nOperation <= 5) {
            Remove(rows);
        } else if (nOperation <= 9) {
            Move(rows, nOperation <= 7 ? -1 : 1);
        } else if (nOperation == 10) {
            const int nRow = below(Size());
            ClickTick(nRow);
            ModelRow(nRow).bTicked = !ModelRow(nRow).bTicked;
        } else {
            const int nRow = below(Size());
            TypeIntoCell(nRow, COL_APERTURE, "1.6"); // in each of the two kinds of rows
            ModelRow(nRow).values[1] = 1.6F;
            EXPECT_EQ(std::min(nRow + 1, Size() - 1), Grid().GetGridCursorRow());
        }
        ExpectEqual();
    }
}

TEST_F(SourceList, WhatCannotBeReadIsReportedAndStays)
{
    const std::string sMissing = m_folder.File("missing 100%s.jpg"), sJunk = m_folder.File("junk.jpg");
    WriteText(sJunk, "no picture");
    const Box missing{wxString::FromUTF8(sMissing) + " Is Not Exist, Please Check!"};
    const LogRecorder log;
    const ExpectedBoxes boxes({{"#0001002 Failed to open file. Can not find the file."}, missing, missing});
    Load({sMissing, m_folder.File("n.jpg"), sJunk});
    EXPECT_EQ(3, std::ranges::count(log.Lines(), "Exif error!"));
    EXPECT_EQ(3, Grid().GetNumberRows());
    Grid().SelectBlock(1, 0, 2, 0);
    Press(wxID_UP); // looks only at the photograph that it shows
}
