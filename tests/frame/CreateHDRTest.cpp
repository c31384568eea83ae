// The command Create HDR Image: what it merges, what it refuses, and how it ends when it is cancelled or
// fails.
#include "tests/frame/FrameFixture.h"

#include "Util/Paths.h"
#include "Widgets/StaticPicture.h"
#include "engine/CacheFolder.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "frame/SourceGrid.h"
#include "image/ImageCache.h"
#include "tests/cli/Photographs.h"
#include "tests/cli/ProgramRun.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/Screen.h"

#include <gmock/gmock.h>
#include <wx/aui/auibook.h>
#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/textctrl.h>

#include <filesystem>
#include <functional>
#include <optional>

using namespace LS::Tests;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

namespace {

const wxSize SIZE(120, 90); // small, and large enough to recover curves from

/// The folder of saved curves, beside the test program, with a few curves; gone at the end.
class CurveFolder {
public:
    CurveFolder()
    {
        fs::remove_all(m_path);
        fs::create_directory(m_path);
        std::vector<float> vfCurve(768);
        for (std::size_t i = 0; i < vfCurve.size(); ++i) {
            const std::size_t nChannel = i / 256;
            vfCurve[i] = static_cast<float>(i % 256 + nChannel + 1) / 256;
        }
        WriteElements(File("linear.crv"), vfCurve);
        fs::copy_file(File("linear.crv"), File("gone.crv"));
        WriteBytes(File("short.crv"), vfCurve.data(), 100);
        WriteText(File("other.txt"), "no curve");
    }
    CurveFolder(const CurveFolder&) = delete;
    CurveFolder& operator=(const CurveFolder&) = delete;
    ~CurveFolder() { fs::remove_all(m_path); }

    std::string File(const std::string& sName) const { return m_path / sName; }

private:
    fs::path m_path = fs::path(LS::Util::NarrowPath(LS::Util::ProgramFolder())) / "curve";
};

struct WithCurves { // before the window, which reads the folder
    CurveFolder m_curves;
};

class Merge : protected WithCurves, public FrameTest {
protected:
    void Run() { Command(ID_CREATE_HDR); }

    void ExpectNothingMerged() const
    {
        EXPECT_FALSE(IsOn(wxID_SAVE));
        EXPECT_EQ(0U, PageOnTop());
        EXPECT_TRUE(m_frame->IsEnabled());
        EXPECT_TRUE(Workspace().sHDRFile.empty());
    }

    /// What the engine holds now, as an OpenEXR file; empty without a result.
    Bytes Result() const
    {
        const std::string sPath = m_folder.File("result.exr");
        fs::remove(sPath);
        return SaveHDRFile(sPath.c_str(), HDR_OPENEXR, nullptr) ? ReadBytes(sPath) : Bytes();
    }

    /// What the program without windows makes of photographs, in a file of the test's folder.
    Bytes Expected(std::vector<std::string> vsArguments) const
    {
        const std::string sPath = m_folder.File("expected.exr");
        vsArguments.insert(vsArguments.end(), {"--force", "-o", sPath});
        const ProgramRun run = RunProgram(vsArguments);
        EXPECT_EQ(0, run.code) << run.err;
        return ReadBytes(sPath);
    }

    wxChoice& CurveList() const { return Find<wxChoice>("choice"); }
    void ChooseCurve(const wxString& name) const
    {
        ASSERT_TRUE(CurveList().SetStringSelection(name)) << name;
    }
    wxTextCtrl& CurveName() const { return Find<wxTextCtrl>("text"); }
    std::size_t PageOnTop() const
    {
        const auto* const item = m_frame->GetSizer()->GetItem(std::size_t{0});
        return static_cast<std::size_t>(dynamic_cast<wxAuiNotebook&>(*item->GetWindow()).GetSelection());
    }
};

const wxString SAME_EXPOSURE =
    "#0203006 Please make sure that every panoramic image has complete exposure information. ";

} // namespace

TEST_F(Merge, EachCurveModeGivesWhatTheProgramWithoutWindowsGives)
{
    const auto vsSources = Series(3, SIZE);
    Load(vsSources);
    struct Case {
        const char* szWhat;
        const char* szCurve; ///< of the list
        std::vector<std::string> vsOptions;
        int nMode;
        bool bSave;
    };
    const std::string sSaved = m_folder.File("saved.crv");
    const std::string sPadded = m_folder.File("padded.crv"); // what the short one lacks is 0
    fs::copy_file(m_curves.File("short.crv"), sPadded);
    fs::resize_file(sPadded, fs::file_size(m_curves.File("linear.crv")));
    const Case cases[] = {
        {"Standard", "Standard", {}, ID_EXISTING_CURVE, true},
        {"a saved curve", "linear.crv", {"--curve", m_curves.File("linear.crv")}, ID_EXISTING_CURVE, true},
        {"a short curve", "short.crv", {"--curve", sPadded}, ID_EXISTING_CURVE, false},
        {"calculated", "linear.crv", {"--curve", "calculate"}, ID_CALCULATE_CURVE, false},
        {"calculated and saved",
         "linear.crv",
         {"--curve", "calculate", "--save-curve", sSaved},
         ID_CALCULATE_CURVE,
         true},
    };
    CurveName().SetValue("new");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szWhat);
        const ExpectedBoxes none({});
        ChooseCurveMode(c.nMode);
        ChooseCurve(c.szCurve);
        Find<wxCheckBox>("check").SetValue(c.bSave);
        Run();
        std::vector<std::string> vsArguments = vsSources;
        vsArguments.insert(vsArguments.end(), c.vsOptions.begin(), c.vsOptions.end());
        EXPECT_EQ(Expected(vsArguments), Result());
        EXPECT_TRUE(PreviewShows(SIZE, 0, 2.2F));
        EXPECT_EQ(1U, PageOnTop());
        EXPECT_EQ(c.nMode == ID_CALCULATE_CURVE && c.bSave, fs::exists(m_curves.File("new.crv")));
    }
    EXPECT_EQ(ReadBytes(sSaved), ReadBytes(m_curves.File("new.crv")));
    const wxArrayString names = CurveList().GetStrings();
    EXPECT_EQ("Standard", names[0]);
    EXPECT_THAT(std::vector<wxString>(names.begin() + 1, names.end()),
                UnorderedElementsAre("linear.crv", "gone.crv", "short.crv", "new.crv"));
    EXPECT_EQ("linear.crv", CurveList().GetStringSelection()) << "the selection stays";
}

TEST_F(Merge, ARefusalSaysWhyAndChangesNothing)
{
    const auto vsSources = Series(3, SIZE);
    Load(vsSources);
    Run();
    const Bytes result = Result();
    const std::wstring sFloatFile = Workspace().sHDRFile;
    const wxString taken = wxString::FromUTF8(m_curves.File("linear.crv"));
    const auto calculate = [this](const wxString& name) {
        ChooseCurveMode(ID_CALCULATE_CURVE);
        CurveName().ChangeValue(name);
    };
    struct Case {
        const char* szWhat;
        std::function<void()> prepare;
        std::vector<Box> boxes;
        std::function<void()> undo = [] {};
    };
    std::optional<ResourceLimit> fewFiles;
    const Case cases[] = {
        {"saved curve is gone",
         [&] {
             fs::remove(m_curves.File("gone.crv"));
             ChooseCurve("gone.crv");
         },
         {ErrorBox("#0201010 Can not locate specified curve file.")}},
        {"saved curve cannot be opened",
         [&] {
             ChooseCurve("linear.crv");
             fewFiles.emplace(RLIMIT_NOFILE, 3);
         },
         {ErrorBox("#0201008 Invalid file. Unable to be identified.")},
         [&] { fewFiles.reset(); }},
        {"no name", [&] { calculate(""); }, {ErrorBox("#0002007 Please specify the file name.")}},
        {"a pasted path", [&] { calculate("../a"); }, {ErrorBox("#0002007 Please specify the file name.")}},
        {"an existing curve",
         [&] { calculate("linear"); },
         {{"#0002002 File " + taken + " already exists, would you like to replace it? ",
           wxYES_NO | wxICON_ERROR, wxID_NO}}},
        {"equal exposures",
         [&] { EditCell(1, COL_SHUTTER, "1/4"), EditCell(2, COL_SHUTTER, "1/4"); },
         {ErrorBox(SAME_EXPOSURE)}},
        {"one image to calculate from",
         [&] {
             calculate("new");
             ClickCell(0, COL_ENABLED), ClickCell(1, COL_ENABLED);
         },
         {ErrorBox("Please select at least two images to calculate the camera response curve.")}},
        {"no image", [&] { ClickCell(2, COL_ENABLED); }, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szWhat);
        ChooseCurveMode(ID_EXISTING_CURVE);
        ChooseCurve("Standard");
        c.prepare();
        {
            const ExpectedBoxes boxes(c.boxes);
            Run();
        }
        c.undo();
        EXPECT_EQ(result, Result());
        EXPECT_EQ(sFloatFile, Workspace().sHDRFile);
        EXPECT_TRUE(IsOn(wxID_SAVE));
    }
    EXPECT_TRUE(AsksToSave());
}

TEST_F(Merge, UntickedRowsMayShareAnExposure)
{
    Load(Series(3, SIZE));
    EditCell(1, COL_SHUTTER, "1/4");
    EditCell(2, COL_SHUTTER, "1/4");
    ClickCell(1, COL_ENABLED);
    const ExpectedBoxes none({});
    Run();
    EXPECT_TRUE(IsOn(wxID_SAVE));
}

TEST_F(Merge, DifferentSizesAreRefusedAfterTheConversion)
{
    Load(Series(2, SIZE));
    Run();
    const Bytes result = Result();
    WritePhotograph(m_folder.File("z.jpg"), {1, "1/2", "8/1", 60, 45});
    AddByDialog(m_folder.File("z.jpg"));
    const ExpectedBoxes boxes(
        {ErrorBox("Can not create HDR image from different resolution images."), SaveQuestion(wxID_CANCEL)});
    Run();
    EXPECT_TRUE(fs::exists(LS::Util::NarrowPath(CacheFolder()) + "z.jpg.tmp"));
    EXPECT_EQ(result, Result());
    EXPECT_TRUE(m_frame->IsEnabled());
    m_frame->Close();
}

TEST_F(Merge, ASecondRunConvertsNothingAgainAndIgnoresCompensation)
{
    const auto vsSources = Series(2, SIZE);
    Load(vsSources);
    Run();
    const Bytes first = Result();
    fs::copy_file(vsSources[1], vsSources[0], fs::copy_options::overwrite_existing);
    ImageCache::DestroyInstance(); // which would hide a second conversion
    EditCell(0, COL_COMPENSATION, "-5");
    Run();
    EXPECT_EQ(first, Result());
}

TEST_F(Merge, EqualNamesFromTwoFoldersShareTheirPixels)
{
    const auto write = [this](const std::string& sName, double dBrightness, const std::string& sShutter) {
        std::string sPath = m_folder.File(sName);
        WritePhotograph(sPath, {dBrightness, std::nullopt, std::nullopt, SIZE.x, SIZE.y});
        SetExif(sPath, {{"Exif.Photo.PixelXDimension", std::to_string(SIZE.x)},
                        {"Exif.Photo.PixelYDimension", std::to_string(SIZE.y)},
                        {"Exif.Photo.ExposureTime", sShutter},
                        {"Exif.Photo.FNumber", "8/1"}});
        return sPath;
    };
    fs::create_directory(m_folder.File("one"));
    fs::create_directory(m_folder.File("two"));
    Load({write("one/a.jpg", 0.25, "1/60"), write("two/a.jpg", 1, "1/15")});
    Run();
    const Bytes shared = Result();
    EXPECT_FALSE(shared.empty());
    const ExpectedBoxes boxes({SaveQuestion(wxID_NO)});
    Load({write("one/a.jpg", 0.25, "1/60"), write("two/b.jpg", 0.25, "1/15")});
    Run();
    EXPECT_EQ(Result(), shared);
}

TEST_F(Merge, ASourceThatDoesNotDecodeEndsIt)
{
    const std::string sMissing = m_folder.File("missing.jpg");
    const auto missing = ErrorBox(wxString::FromUTF8(sMissing) + " Is Not Exist, Please Check!");
    for (const bool bAlone : {true, false}) {
        SCOPED_TRACE(bAlone);
        {
            const ModalAnswer whenSelected([](wxDialog&) { return wxID_OK; });
            Load(bAlone ? std::vector{sMissing} : std::vector{Series(1, SIZE)[0], sMissing});
        }
        std::vector<Box> boxes{missing};
        if (!bAlone) // the size that the missing one would have isn't known
            boxes.push_back(ErrorBox("Can not create HDR image from different resolution images."));
        const ExpectedBoxes expected(boxes);
        Run();
        EXPECT_FALSE(IsOn(wxID_SAVE));
        EXPECT_EQ(0U, PageOnTop());
        EXPECT_TRUE(m_frame->IsEnabled());
    }
}

TEST_F(Merge, SizesThatNobodyToldFailCleanly)
{
    const auto vsSources = Series(1, SIZE); // no size among their tags, which reads as -1
    for (const bool bExif : {true, false}) {
        SCOPED_TRACE(bExif);
        if (!bExif)
            SetExif(vsSources[0], {}); // size 0
        Load({vsSources[0]});
        Run();
        EXPECT_TRUE(IsOn(wxID_SAVE));
        // Its converted pixels stay when a row goes, so the one that comes again is not decoded.
        Press(wxID_REPLACE);
        AddByDialog(vsSources[0]);
        const ExpectedBoxes none({});
        Run();
        EXPECT_FALSE(IsOn(wxID_SAVE));
    }
}

TEST_F(Merge, TheCurveListIsAsWideAsItsLongestEntryAsFarAsThePageGoes)
{
    Load(Series(2, SIZE));
    ChooseCurveMode(ID_CALCULATE_CURVE);
    const ExpectedBoxes none({});
    for (const int nLength : {20, 200}) {
        CurveName().ChangeValue(wxString('m', static_cast<std::size_t>(nLength)));
        Run();
        const int nRoom = CurveList().GetParent()->GetClientSize().x - CurveList().GetPosition().x - 5;
        EXPECT_EQ(std::min(CurveList().GetBestSize().x, nRoom), CurveList().GetSize().x) << nLength;
        EXPECT_EQ(nLength == 200, CurveList().GetBestSize().x > nRoom);
    }
}

TEST_F(Merge, CancelEndsItWhereverItComes)
{
    Load(Series(3, wxSize(200, 200)));
    ChooseCurveMode(ID_CALCULATE_CURVE);
    CurveName().ChangeValue("cancelled");
    const ExpectedBoxes none({});
    for (const int nPercent : {0, 20, 35, 60, 85, 92}) {
        SCOPED_TRACE(nPercent);
        {
            const CancelledJob cancel(nPercent);
            Run();
        }
        ExpectNothingMerged();
        EXPECT_FALSE(fs::exists(m_curves.File("cancelled.crv")));
    }
    Run();
    EXPECT_TRUE(IsOn(wxID_SAVE));
    EXPECT_TRUE(fs::exists(m_curves.File("cancelled.crv")));
}

TEST_F(Merge, CancelEndsItAtEachPositionInEachWay)
{
    Load(Series(3, SIZE));
    const ExpectedBoxes none({});
    constexpr int LAST = 92; // then the picture is merged
    for (int nPercent = 0; nPercent <= LAST; ++nPercent) {
        SCOPED_TRACE(nPercent);
        {
            const CancelledJob cancel(nPercent, Stop{nPercent % 3});
            Run();
        }
        ExpectNothingMerged();
    }
    Run();
    EXPECT_TRUE(IsOn(wxID_SAVE));
}

TEST_F(Merge, ACancelledSecondRunLeavesThePictureAndNothingToSave)
{
    Load(Series(3, SIZE));
    Run();
    const wxImage picture = Shown(Preview(), SIZE);
    ClickCell(0, COL_ENABLED);
    {
        const CancelledJob cancel(20);
        Run();
    }
    EXPECT_FALSE(IsOn(wxID_SAVE));
    EXPECT_TRUE(SamePixels(picture, Shown(Preview(), SIZE)));
    EXPECT_EQ(Bytes(), Result());

    ChooseBitDepth(1);
    Slide(ID_EXPOSURE, 30);
    EXPECT_TRUE(SamePixels(picture, Shown(Preview(), SIZE)));
    const ExpectedBoxes none({}); // nothing is to be saved any more
    Load(Series(2, SIZE));
    Run();
    EXPECT_TRUE(IsOn(wxID_SAVE));
}

TEST_F(Merge, AReplacedCurveStaysUntilTheMergeHasSucceeded)
{
    Load(Series(3, SIZE));
    ChooseCurveMode(ID_CALCULATE_CURVE);
    CurveName().ChangeValue("linear");
    const std::string sCurve = m_curves.File("linear.crv");
    const Bytes old = ReadBytes(sCurve);
    const Box question{"#0002002 File " + wxString::FromUTF8(sCurve) +
                           " already exists, would you like to replace it? ",
                       wxYES_NO | wxICON_ERROR, wxID_YES};
    {
        const CancelledJob cancel(50);
        const ExpectedBoxes boxes({question});
        Run();
    }
    EXPECT_EQ(old, ReadBytes(sCurve));
    const ExpectedBoxes boxes({question});
    Run();
    EXPECT_NE(old, ReadBytes(sCurve));
}

TEST_F(Merge, ACurveThatCannotBeSavedLeavesTheResult)
{
    Load(Series(3, SIZE));
    ChooseCurveMode(ID_CALCULATE_CURVE);
    fs::remove_all(fs::path(m_curves.File("x")).parent_path());
    const ExpectedBoxes none({});
    Run();
    EXPECT_TRUE(IsOn(wxID_SAVE));
    EXPECT_EQ(4U, CurveList().GetCount()) << "not read anew";
}

TEST_F(Merge, MoreImagesThanFilesMayBeOpenFailCleanly)
{
    constexpr int IMAGES = 80;
    std::vector<std::string> vsPaths;
    const std::string sFirst = Series(1, wxSize(16, 12))[0];
    for (int i = 0; i < IMAGES; ++i) {
        vsPaths.push_back(m_folder.File(std::to_string(i) + ".jpg"));
        fs::copy_file(sFirst, vsPaths.back());
        SetExif(vsPaths.back(),
                {{"Exif.Photo.ExposureTime", "1/" + std::to_string(i + 1)}, {"Exif.Photo.FNumber", "8/1"}});
    }
    Load(vsPaths);
    const ExpectedBoxes none({});
    {
        const ResourceLimit fewFiles(RLIMIT_NOFILE, IMAGES);
        Run();
        EXPECT_FALSE(IsOn(wxID_SAVE));
    }
    Run();
    EXPECT_TRUE(IsOn(wxID_SAVE));
}
