// The command Create HDR Image: what it merges, what it refuses, and how it ends when it is cancelled or
// fails.
#include "tests/frame/FrameFixture.h"

#include "Util/Paths.h"
#include "engine/HDRRoutine.h"
#include "frame/SourceGrid.h"
#include "tests/cli/Photographs.h"
#include "xml/Config.h"

#include <gmock/gmock.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/textctrl.h>

#include <filesystem>
#include <functional>

using namespace LS::Tests;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

namespace {

const wxSize SIZE(120, 90); // small, and large enough to recover curves from

/// The folder of saved curves, beside the test program, with one of them; gone at the end.
struct CurveFolder {
    CurveFolder()
    {
        fs::remove_all(path);
        fs::create_directory(path);
        std::vector<float> vfCurve(768);
        for (std::size_t i = 0; i < vfCurve.size(); ++i)
            vfCurve[i] = static_cast<float>(i % 256 + i / 256 + 1) / 256;
        WriteElements(File("linear.crv"), vfCurve);
    }
    CurveFolder(const CurveFolder&) = delete;
    CurveFolder& operator=(const CurveFolder&) = delete;
    ~CurveFolder() { fs::remove_all(path); }

    std::string File(const std::string& sName) const { return path / sName; }

    const fs::path path = fs::path(LS::Util::NarrowPath(LS::Util::ProgramFolder())) / "curve";
};

class Merge : protected CurveFolder, public FrameTest {
protected:
    /// What the engine holds now, as an OpenEXR file; empty without a result.
    Bytes Result() const
    {
        const std::string sPath = m_folder.File("result.exr");
        fs::remove(sPath);
        return SaveHDRFile(sPath.c_str(), HDR_OPENEXR, nullptr) ? ReadBytes(sPath) : Bytes();
    }

    wxChoice& CurveList() const { return Find<wxChoice>("choice"); }

    /// @param name  of the curve to be saved
    void Calculate(const wxString& name)
    {
        ChooseCurveMode(ID_CALCULATE_CURVE);
        Find<wxTextCtrl>("text").ChangeValue(name);
    }
};

} // namespace

TEST_F(Merge, EachCurveModeGivesWhatTheProgramWithoutWindowsGives)
{
    const auto vsSources = Series(SIZE);
    Load(vsSources);
    const std::string sSaved = m_folder.File("saved.crv");
    const struct {
        const char* szCurve; ///< of the list
        int nMode;
        bool bSave;
        std::vector<std::string> vsOptions;
    } cases[] = {
        {"Standard", ID_EXISTING_CURVE, true, {}},
        {"linear.crv", ID_EXISTING_CURVE, true, {"--curve", File("linear.crv")}},
        {"linear.crv", ID_CALCULATE_CURVE, false, {"--curve", "calculate"}},
        {"linear.crv", ID_CALCULATE_CURVE, true, {"--curve", "calculate", "--save-curve", sSaved}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.vsOptions));
        Calculate("new");
        ChooseCurveMode(c.nMode);
        ASSERT_TRUE(CurveList().SetStringSelection(c.szCurve));
        Find<wxCheckBox>("check").SetValue(c.bSave);
        Command(ID_CREATE_HDR);
        EXPECT_EQ(ByHeadless(vsSources, c.vsOptions), Result());
        EXPECT_EQ(c.nMode == ID_CALCULATE_CURVE && c.bSave, fs::exists(File("new.crv")));
    }
    EXPECT_EQ(ReadBytes(sSaved), ReadBytes(File("new.crv")));
    EXPECT_THAT(CurveList().GetStrings(), UnorderedElementsAre("Standard", "linear.crv", "new.crv"));
    EXPECT_EQ("linear.crv", CurveList().GetStringSelection()) << "the selection stays";
}

TEST_F(Merge, ARefusalSaysWhyAndChangesNothing)
{
    Load(Series(SIZE));
    Command(ID_CREATE_HDR);
    const Bytes result = Result();
    const std::string sOther = m_folder.File("z.jpg");
    struct Case {
        const char* szWhat;
        std::function<void()> prepare;
        std::vector<Box> boxes;
    };
    const Case cases[] = {
        {"another size",
         [&] {
             WritePhotograph(sOther, {1, "1/2", "8/1", 60, 45});
             const ModalAnswer choose(ChooseFile(sOther));
             Press(wxID_ADD);
             EXPECT_EQ(m_folder.Path(), Config::Instance()->m_lastImagePath) << "for the next ones";
         },
         {{"Can not create HDR image from different resolution images."}}},
        {"an existing curve",
         [&] { ClickTick(3), Calculate("linear"); },
         {ReplaceQuestion(File("linear.crv"), wxID_NO)}},
        {"a pasted path", [&] { Calculate("../a"); }, {{"#0002007 Please specify the file name."}}},
        {"saved curve is gone",
         [&] {
             CurveList().SetStringSelection("linear.crv");
             fs::remove(File("linear.crv"));
         },
         {{"#0201010 Can not locate specified curve file."}}},
        {"equal exposures",
         [&] { TypeIntoCell(1, COL_SHUTTER, "1/4"), TypeIntoCell(2, COL_SHUTTER, "1/4"); },
         {{"#0203006 Please make sure that every panoramic image has complete exposure information. "}}},
        {"one image to calculate from",
         [&] { Calculate("new"), ClickTick(0), ClickTick(1); },
         {{"Please select at least two images to calculate the camera response curve."}}},
        {"no image", [&] { ClickTick(2); }, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szWhat);
        ChooseCurveMode(ID_EXISTING_CURVE);
        CurveList().SetStringSelection("Standard");
        c.prepare();
        {
            const ExpectedBoxes boxes(c.boxes);
            Command(ID_CREATE_HDR);
        }
        EXPECT_EQ(result, Result());
        EXPECT_TRUE(IsOn(wxID_SAVE));
    }
    EXPECT_TRUE(AsksToSave());
}

TEST_F(Merge, OnlyTickedRowsOfTheSeriesCount)
{
    const std::string sOther = m_folder.File("other/a.jpg");
    fs::create_directory(m_folder.File("other"));
    WritePhotograph(sOther, {1, "1/2", "8/1", 60, 45});
    Load({sOther}); // is converted, and has the name of one of the next series
    Command(ID_CREATE_HDR);
    const auto vsSources = Series(SIZE);
    const ExpectedBoxes boxes({SaveQuestion(wxID_NO)});
    Load(vsSources);
    TypeIntoCell(1, COL_SHUTTER, "1/15"); // as the third one
    ClickTick(1);
    Command(ID_CREATE_HDR);
    const Bytes result = Result();
    EXPECT_EQ(ByHeadless({vsSources[0], vsSources[2]}), result);

    Series(wxSize(60, 45)); // the converted ones stay as long as the series
    TypeIntoCell(0, COL_COMPENSATION, "-5");
    Command(ID_CREATE_HDR);
    EXPECT_EQ(result, Result());
}

TEST_F(Merge, CancelLosesTheResultAtEachPositionAndKeepsTheCurve)
{
    const wxSize size(200, 200);
    Load(Series(size));
    Command(ID_CREATE_HDR);
    Calculate("linear");
    const Bytes curve = ReadBytes(File("linear.crv"));
    constexpr int LAST = 92; // then the picture is merged
    for (int nPercent = 0; nPercent <= LAST; nPercent += 9) {
        SCOPED_TRACE(nPercent);
        const ExpectedBoxes boxes({ReplaceQuestion(File("linear.crv"), wxID_YES)});
        const CancelledJob cancel(nPercent);
        Command(ID_CREATE_HDR);
        EXPECT_EQ(Bytes(), Result());
        EXPECT_FALSE(IsOn(wxID_SAVE));
        EXPECT_EQ(curve, ReadBytes(File("linear.crv")));
    }
    EXPECT_FALSE(AsksToSave());
}
