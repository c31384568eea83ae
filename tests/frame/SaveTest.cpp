// The command Save on both roads: the same bytes as the program without windows, and every way to fail.
#include "tests/frame/FrameFixture.h"

#include "Widgets/SaveHDRImageDlg.h"
#include "frame/ControlRules.h"
#include "tests/cli/ProgramRun.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/Screen.h"
#include "xml/Config.h"

#include <wx/app.h>
#include <wx/choice.h>
#include <wx/filedlg.h>
#include <wx/filepicker.h>
#include <wx/image.h>
#include <wx/textctrl.h>

#include <filesystem>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

constexpr int ID_FORMAT = 6699;    // of the dialog for ordinary pictures
constexpr int ID_FILE_NAME = 6701; // likewise
const wxSize SIZE(96, 72);

class Save : public FrameTest {
protected:
    Save()
    {
        Config::DestroyInstance(); // starts from the defaults
        Config::Instance()->m_fullName = wxString::FromUTF8(m_folder.Path()) + "/";
        m_vsSources = Series(3, SIZE);
        Load(m_vsSources);
        Command(ID_CREATE_HDR);
    }
    ~Save() override { Config::DestroyInstance(); }

    /// What the program without windows writes of the same photographs.
    Bytes Expected(const std::string& sName, const std::vector<std::string>& vsOptions = {}) const
    {
        std::vector<std::string> vsArguments = m_vsSources;
        vsArguments.insert(vsArguments.end(), vsOptions.begin(), vsOptions.end());
        vsArguments.insert(vsArguments.end(), {"--force", "-o", m_folder.File(sName)});
        const ProgramRun run = RunProgram(vsArguments);
        EXPECT_EQ(0, run.code) << run.err;
        return ReadBytes(m_folder.File(sName));
    }

    /// Fills in the dialog for ordinary pictures, and ends it.
    /// @param nFormat  position in its list; negative for the one that it opens with
    /// @param sName    empty for the proposal
    ModalAnswer::Answer FillIn(int nFormat, const std::string& sName, int nButton = wxID_SAVE)
    {
        return [=, this](wxDialog& dialog) {
            dialog.CallAfter([=, this, &dialog] { // once it runs
                auto& choice = dynamic_cast<wxChoice&>(*dialog.FindWindow(ID_FORMAT));
                auto& name = dynamic_cast<wxTextCtrl&>(*dialog.FindWindow(ID_FILE_NAME));
                if (nFormat >= 0) {
                    choice.SetSelection(nFormat);
                    wxCommandEvent event(wxEVT_CHOICE, ID_FORMAT);
                    event.SetEventObject(&choice);
                    dialog.GetEventHandler()->ProcessEvent(event);
                }
                m_sProposal = name.GetValue().utf8_string();
                if (!sName.empty())
                    name.SetValue(sName);
                wxCommandEvent press(wxEVT_BUTTON, nButton);
                press.SetEventObject(dialog.FindWindow(nButton));
                dialog.GetEventHandler()->ProcessEvent(press);
            });
            return static_cast<int>(wxID_NONE); // let it run
        };
    }

    void SaveWith(const ModalAnswer::Answer& dialogs, std::vector<Box> boxes = {})
    {
        const ExpectedBoxes expected(std::move(boxes), dialogs);
        Command(wxID_SAVE);
    }

    Bytes Saved(const std::string& sName) const { return ReadBytes(m_folder.File(sName)); }

    std::vector<std::string> m_vsSources;
    std::string m_sProposal; ///< the name that the dialog proposed
};

const Box UNABLE = ErrorBox(
    "#0002003 Unable to save! Please make sure the driver is writable and non-shared with enough space.");

Box ReplaceQuestion(const std::string& sPath, int nAnswer)
{
    return {"#0002002 File " + wxString::FromUTF8(sPath) + " already exists, would you like to replace it? ",
            wxYES_NO | wxICON_QUESTION, nAnswer};
}

} // namespace

TEST_F(Save, MergedImagesHaveTheBytesOfTheProgramWithoutWindows)
{
    const struct {
        int nFormat;
        const char* szFormat;
    } formats[] = {{0, "exr"}, {1, "hdr"}, {2, "tiff"}};
    for (const auto& format : formats) {
        SCOPED_TRACE(format.szFormat);
        // The format follows the list; the extension plays no part, nor do sliders that were moved.
        ChooseBitDepth(BIT_DEPTH_8);
        Slide(ID_EXPOSURE, 30);
        ChooseBitDepth(BIT_DEPTH_32);
        const std::string sName = std::string("window.") + format.szFormat + ".abc";
        SaveWith(ChooseFile(m_folder.File(sName), format.nFormat));
        EXPECT_EQ(Expected("expected.exr", {"--format", format.szFormat}), Saved(sName));
    }
    EXPECT_FALSE(AsksToSave()) << "all is saved";
}

TEST_F(Save, PicturesHaveTheBytesOfTheProgramWithoutWindows)
{
    struct Case {
        int nFormat;
        const char* szName;
        int nQuality, nCompression;
        std::vector<std::string> vsOptions;
    };
    const Case cases[] = {
        {0, "x.jpg", 95, 2, {}},
        {0, "low.jpg", 40, 2, {"--quality", "40"}},
        {0, "best.jpg", 100, 2, {"--quality", "100"}},
        {1, "x.png", 95, 2, {}},
        {2, "packbits.tif", 95, 2, {"--depth", "8", "--compression", "packbits"}},
        {2, "lzw.tif", 95, 3, {"--depth", "8", "--compression", "lzw"}},
        {3, "x.bmp", 95, 2, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szName);
        Config::Instance()->m_jpegCompression = c.nQuality;
        Config::Instance()->m_compressionType = c.nCompression;
        ChooseBitDepth(BIT_DEPTH_8);
        Slide(ID_EXPOSURE, 7);
        Slide(ID_GAMMA, 18);
        SaveWith(FillIn(c.nFormat, c.szName));
        std::vector<std::string> vsOptions = c.vsOptions;
        vsOptions.insert(vsOptions.end(), {"--exposure", "0.7", "--gamma", "1.8"});
        EXPECT_EQ(Expected(std::string("expected-") + c.szName, vsOptions), Saved(c.szName));
    }
    EXPECT_FALSE(AsksToSave());
}

TEST_F(Save, AStoredTargaFormatWritesTarga)
{
    ChooseBitDepth(BIT_DEPTH_8);
    Config::Instance()->m_imageType = "Targa Files (*.tga)";
    SaveWith(FillIn(-1, "x.tga"));
    SaveWith(FillIn(1, "x.png"));
    const wxImage targa(wxString::FromUTF8(m_folder.File("x.tga")), wxBITMAP_TYPE_TGA);
    const wxImage png(wxString::FromUTF8(m_folder.File("x.png")), wxBITMAP_TYPE_PNG);
    EXPECT_TRUE(SamePixels(png, targa));
}

TEST_F(Save, AnUnknownStoredFormatIsAFailedSave)
{
    ChooseBitDepth(BIT_DEPTH_8);
    Config::Instance()->m_imageType = "Anything";
    SaveWith(FillIn(-1, "x.any"), {UNABLE});
    EXPECT_FALSE(fs::exists(m_folder.File("x.any")));
}

TEST_F(Save, ProposalsCountTheSavesOfTheRun)
{
    ChooseBitDepth(BIT_DEPTH_8);
    SaveWith(FillIn(-1, "", wxID_CANCEL));
    const std::string sFirst = m_sProposal;
    ASSERT_EQ(0U, sFirst.find("pano")) << sFirst;
    SaveWith(FillIn(-1, ""));
    EXPECT_EQ(sFirst, m_sProposal) << "a cancelled dialog doesn't count";
    EXPECT_TRUE(fs::exists(m_folder.File(sFirst)));
    SaveWith(FillIn(-1, "", wxID_CANCEL));
    EXPECT_EQ("pano" + std::to_string(std::stoi(sFirst.substr(4)) + 1) + ".jpg", m_sProposal);
}

TEST_F(Save, CancelledQuestionsChangeNothing)
{
    const auto vsBefore = m_folder.Names();
    SaveWith(ChooseFile("", 0));
    ChooseBitDepth(BIT_DEPTH_8);
    SaveWith(FillIn(0, "x.jpg", wxID_CANCEL));
    EXPECT_EQ(vsBefore, m_folder.Names());
    EXPECT_TRUE(AsksToSave());
}

TEST_F(Save, AFailedMergedImageSaysNothingAndStaysModified)
{
    {
        const ResourceLimit fullDisk(RLIMIT_FSIZE, 100);
        for (const int nFormat : {0, 1, 2})
            SaveWith(ChooseFile(m_folder.File("x.any"), nFormat));
    }
    EXPECT_TRUE(AsksToSave());
}

TEST_F(Save, AFailedPictureIsToldAndKeepsTheOldFile)
{
    ChooseBitDepth(BIT_DEPTH_8);
    const char* const names[] = {"x.jpg", "x.png", "x.tif", "x.bmp"};
    for (int nFormat = 0; nFormat < 4; ++nFormat) {
        const std::string sPath = m_folder.File(names[nFormat]);
        SCOPED_TRACE(sPath);
        WriteText(sPath, "an older file");
        const auto vsBefore = m_folder.Names();
        const ResourceLimit fullDisk(RLIMIT_FSIZE, 100);
        SaveWith(FillIn(nFormat, names[nFormat]), {ReplaceQuestion(sPath, wxID_YES), UNABLE});
        EXPECT_EQ(vsBefore, m_folder.Names());
        const Bytes bytes = ReadBytes(sPath);
        EXPECT_EQ("an older file", std::string(bytes.begin(), bytes.end()));
    }
    EXPECT_FALSE(AsksToSave()) << "the writing had begun";
}

TEST_F(Save, CancelDuringTheJobWritesNoPicture)
{
    ChooseBitDepth(BIT_DEPTH_8);
    const auto vsBefore = m_folder.Names();
    constexpr int LAST = 60; // then the picture is mapped
    for (int nPercent = 0; nPercent <= LAST; ++nPercent) {
        SCOPED_TRACE(nPercent);
        const CancelledJob cancel(nPercent, Stop{nPercent % 3});
        SaveWith(FillIn(1, "x.png"));
    }
    EXPECT_EQ(vsBefore, m_folder.Names());
    EXPECT_TRUE(AsksToSave());
    EXPECT_TRUE(IsOn(wxID_SAVE));
    SaveWith(FillIn(1, "x.png"));
    EXPECT_TRUE(fs::exists(m_folder.File("x.png"))) << "the result is still there";
}

TEST_F(Save, CancelDoesNotStopTheWritingOfAMergedImage)
{
    {
        const CancelledJob cancel(30);
        SaveWith(ChooseFile(m_folder.File("x.exr"), 0));
    }
    EXPECT_EQ(Expected("expected.exr"), Saved("x.exr"));
    ChooseBitDepth(BIT_DEPTH_8);
    Slide(ID_EXPOSURE, 20);
    EXPECT_TRUE(PreviewShows(SIZE, 2, 2.2F)) << "nor what comes then";
}

TEST_F(Save, TheCloseQuestionSavesAndGoesOnWhateverComesOfIt)
{
    struct Case {
        const char* szWhat;
        int nDepth;
        ModalAnswer::Answer dialog;
        const char* szFile; ///< that is there then; or null
    };
    const Case cases[] = {
        {"32 bits", BIT_DEPTH_32, ChooseFile(m_folder.File("closed.exr"), 0), "closed.exr"},
        {"8 bits", BIT_DEPTH_8, FillIn(1, "closed.png"), "closed.png"},
        {"32 bits, cancelled", BIT_DEPTH_32, ChooseFile("", 0), nullptr},
        {"8 bits, cancelled", BIT_DEPTH_8, FillIn(1, "no.png", wxID_CANCEL), nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szWhat);
        ChooseBitDepth(c.nDepth);
        const ExpectedBoxes boxes({SaveQuestion(wxID_YES)}, c.dialog);
        Load(m_vsSources); // asks as closing does
        EXPECT_FALSE(IsOn(wxID_SAVE));
        if (c.szFile) {
            EXPECT_TRUE(fs::exists(m_folder.File(c.szFile)));
        }
        Command(ID_CREATE_HDR);
    }
    ChooseBitDepth(BIT_DEPTH_8);
    const ExpectedBoxes boxes({SaveQuestion(wxID_YES)}, FillIn(1, "no.png", wxID_CANCEL));
    EXPECT_TRUE(m_frame->Close());
    EXPECT_TRUE(wxPendingDelete.Member(m_frame)) << "goes at the next idle time";
}
