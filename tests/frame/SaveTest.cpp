// The command Save of both bit depths: the bytes of the program without windows, and every way to fail.
#include "tests/frame/FrameFixture.h"

#include "frame/ControlRules.h"
#include "tests/support/ResourceLimit.h"
#include "xml/Config.h"

#include <wx/choice.h>
#include <wx/dialog.h>
#include <wx/textctrl.h>

#include <filesystem>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

class Save : public FrameTest {
protected:
    Save()
    {
        Config::DestroyInstance(); // starts from the defaults
        Config::Instance()->m_fullName = wxString::FromUTF8(m_folder.Path()) + "/";
        Load(m_vsSources);
        Command(ID_CREATE_HDR);
    }
    ~Save() override { Config::DestroyInstance(); }

    /// Fills in the dialog for ordinary pictures, and ends it. @param nFormat  position in its list
    static ModalAnswer::Answer FillIn(int nFormat, const std::string& sName, int nButton = wxID_SAVE)
    {
        return [=](wxDialog& dialog) {
            dialog.CallAfter([=, &dialog] { // once it runs
                constexpr int ID_FORMAT = 6699, ID_FILE_NAME = 6701;
                auto& format = dynamic_cast<wxChoice&>(*dialog.FindWindow(ID_FORMAT));
                format.SetSelection(nFormat);
                wxCommandEvent chosen(wxEVT_CHOICE, ID_FORMAT);
                chosen.SetEventObject(&format);
                format.ProcessWindowEvent(chosen);
                dynamic_cast<wxTextCtrl&>(*dialog.FindWindow(ID_FILE_NAME)).SetValue(sName);
                wxCommandEvent press(wxEVT_BUTTON, nButton);
                press.SetEventObject(dialog.FindWindow(nButton));
                dialog.FindWindow(nButton)->ProcessWindowEvent(press);
            });
            return static_cast<int>(wxID_NONE); // let it run
        };
    }

    void SaveWith(int nDepth, const ModalAnswer::Answer& dialogs, const std::vector<Box>& boxes = {})
    {
        ChooseBitDepth(nDepth);
        const ExpectedBoxes expected(boxes, dialogs);
        Command(wxID_SAVE);
    }

    std::vector<std::string> m_vsSources = Series();
};

} // namespace

TEST_F(Save, FilesHaveTheBytesOfTheProgramWithoutWindows)
{
    struct Case {
        int nDepth, nFormat;
        const char* szExtension;
        int nQuality, nCompression; ///< of the settings
        std::vector<std::string> vsOptions;
    };
    const Case cases[] = {
        {BIT_DEPTH_32, 0, "exr", 95, 2, {}},
        {BIT_DEPTH_32, 1, "hdr", 95, 2, {}},
        {BIT_DEPTH_32, 2, "tiff", 95, 2, {}},
        {BIT_DEPTH_8, 0, "jpg", 40, 2, {"--quality", "40"}},
        {BIT_DEPTH_8, 1, "png", 95, 2, {}},
        {BIT_DEPTH_8, 2, "tif", 95, 2, {"--depth", "8", "--compression", "packbits"}},
        {BIT_DEPTH_8, 3, "bmp", 95, 2, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szExtension + testing::PrintToString(c.vsOptions));
        Config::Instance()->m_jpegCompression = c.nQuality;
        Config::Instance()->m_compressionType = c.nCompression;
        Slide(ID_EXPOSURE, 7); // play no part in 32 bits
        Slide(ID_GAMMA, 18);
        const std::string sName = std::to_string(&c - cases) + "." + c.szExtension;
        std::vector<std::string> vsOptions = c.vsOptions;
        ModalAnswer::Answer dialog = ChooseFile(m_folder.File(sName), c.nFormat);
        if (c.nDepth == BIT_DEPTH_8) {
            dialog = FillIn(c.nFormat, sName);
            vsOptions.insert(vsOptions.end(), {"--exposure", "0.7", "--gamma", "1.8"});
            const CancelledJob cancel(40);
            SaveWith(c.nDepth, dialog);
            EXPECT_FALSE(fs::exists(m_folder.File(sName)));
        }
        SaveWith(c.nDepth, dialog);
        EXPECT_EQ(ByHeadless(m_vsSources, vsOptions, c.szExtension), ReadBytes(m_folder.File(sName)));
    }
    EXPECT_FALSE(AsksToSave()) << "all is saved";
}

TEST_F(Save, AFullDiskKeepsTheResultModifiedAndRoomIsAllThatIsMissing)
{
    {
        const ResourceLimit fullDisk(RLIMIT_FSIZE, 100);
        Command(ID_CREATE_HDR);
    }
    EXPECT_FALSE(IsOn(wxID_SAVE));
    Command(ID_CREATE_HDR);
    WriteText(m_folder.File("x.png"), "an older file");
    const auto saveOnFullDisk = [this](int nDepth, const ModalAnswer::Answer& dialogs,
                                       const std::vector<Box>& boxes) {
        const ResourceLimit fullDisk(RLIMIT_FSIZE, 100);
        SaveWith(nDepth, dialogs, boxes);
    };
    saveOnFullDisk(BIT_DEPTH_32, ChooseFile(m_folder.File("x.exr")), {});
    EXPECT_TRUE(AsksToSave());
    saveOnFullDisk(BIT_DEPTH_8, FillIn(1, "x.png"),
                   {ReplaceQuestion(m_folder.File("x.png"), wxID_YES),
                    {"#0002003 Unable to save! Please make sure the driver is writable and non-shared with "
                     "enough space."}});
    EXPECT_EQ("an older file", ReadText(m_folder.File("x.png")));
    SaveWith(BIT_DEPTH_32, ChooseFile(m_folder.File("y.exr")));
    EXPECT_EQ(ByHeadless(m_vsSources), ReadBytes(m_folder.File("y.exr")));
}

TEST_F(Save, TheQuestionBeforeAResultIsLost)
{
    struct Case {
        int nAnswer, nDepth;
        const char* szFile;
        ModalAnswer::Answer dialog;
        bool bSaved;
    };
    const Case cases[] = {
        {wxID_NO, BIT_DEPTH_32, "no.exr", {}, false},
        {wxID_YES, BIT_DEPTH_32, "closed.exr", ChooseFile(m_folder.File("closed.exr")), true},
        {wxID_YES, BIT_DEPTH_8, "closed.png", FillIn(1, "closed.png"), true},
        {wxID_YES, BIT_DEPTH_32, "cancelled.exr", ChooseFile(""), false},
        {wxID_YES, BIT_DEPTH_8, "cancelled.png", FillIn(1, "cancelled.png", wxID_CANCEL), false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.szFile);
        ChooseBitDepth(c.nDepth);
        const ExpectedBoxes boxes({SaveQuestion(c.nAnswer)}, c.dialog);
        Load(m_vsSources);
        EXPECT_FALSE(IsOn(wxID_SAVE)) << "a new series, whatever came of it";
        EXPECT_EQ(c.bSaved, fs::exists(m_folder.File(c.szFile)));
        Load(m_vsSources); // there is nothing to ask for any more
        Command(ID_CREATE_HDR);
    }
    SaveWith(BIT_DEPTH_32, ChooseFile(m_folder.File("saved.exr")));
    Slide(ID_EXPOSURE, 1); // another preview is to be saved as well
    const ExpectedBoxes boxes({SaveQuestion(wxID_CANCEL), SaveQuestion(wxID_CANCEL)});
    Load({});
    m_frame->Close();
    EXPECT_EQ(3, Grid().GetNumberRows());
    EXPECT_FALSE(m_frame->IsBeingDeleted());
}
