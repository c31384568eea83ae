// The save dialog and its proposals: what it proposes, refuses, asks and leaves behind.
#include "Widgets/SaveHDRImageDlg.h"

#include "Widgets/HyperlinkCtrl.h"
#include "Widgets/JPEGCompressionSettings.h"
#include "Widgets/SaveProposal.h"
#include "Widgets/TiffOptionsDlg.h"
#include "tests/Widgets/WidgetTest.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/TempFolder.h"
#include "xml/Config.h"

#include <gmock/gmock.h>
#include <wx/choice.h>
#include <wx/filepicker.h>
#include <wx/msgdlg.h>
#include <wx/slider.h>
#include <wx/textctrl.h>

#include <filesystem>
#include <functional>
#include <string>
#include <tuple>

using namespace LS::Tests;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char* JPEG = "JPEG Image Format (*.jpeg;*.jpg)";
constexpr const char* PNG = "Portable Network Graphics (*.png)";
constexpr const char* TIFF = "Tiff Image Format (*.tiff;*.tif)";
constexpr const char* BMP = "Windows Bitmap (*.bmp)";

/// The dialog with its controls by what they are for.
class Dialog : public SaveHDRImageDlg {
public:
    explicit Dialog(wxImage* pImage = nullptr) : SaveHDRImageDlg(nullptr, pImage, wxID_ANY, "Save") {}

    wxChoice& Format() { return *static_cast<wxChoice*>(FindWindow(6699)); }
    wxWindow& Link() { return *FindWindow(6700); }
    wxTextCtrl& Name() { return *static_cast<wxTextCtrl*>(FindWindow(6701)); }
    wxDirPickerCtrl& Folder() { return *static_cast<wxDirPickerCtrl*>(FindWindow("dirpicker")); }
    wxString LinkText() { return Link().IsShown() ? Link().GetLabel() : wxString(); }

    void Choose(int nFormat)
    {
        Format().SetSelection(nFormat);
        wxCommandEvent event(wxEVT_CHOICE, 6699);
        Format().ProcessWindowEvent(event);
    }

    void Follow()
    {
        LS::Widgets::lsHyperlinkEvent event(LS::Widgets::lsEVT_HYPERLINK, 6700);
        Link().ProcessWindowEvent(event);
    }

    /// Runs it, pressing Save after a preparation, and Cancel if it is still there then.
    bool Save(const std::function<void()>& prepare = [] {})
    {
        CallAfter([this, prepare] {
            prepare();
            Press(*this, wxID_SAVE);
            if (IsModal())
                Press(*this, wxID_CANCEL);
        });
        return ShowModal() == wxID_OK;
    }
};

class SaveDialog : public testing::Test {
protected:
    SaveDialog()
    {
        Config::DestroyInstance();
        std::filesystem::create_directory(m_folder.File("out"));
        Settings().m_fullName = Out();
    }
    ~SaveDialog() override { Config::DestroyInstance(); }

    static Config& Settings() { return *Config::Instance(); }

    /// The folder of the settings, with its separator, or a path in it.
    wxString Out(const char* szName = "") const { return m_folder.WideFile(std::string("out/") + szName); }

    TempFolder m_folder;
};

} // namespace

TEST_F(SaveDialog, FormatsOfTheSettingsAndOfTheList)
{
    const struct {
        const char* szFormat;
        int nEntry;
        const char *szOpened, *szChosen, *szLink;
    } cases[] = {
        {JPEG, 0, ".jpg", ".jpg", "Quality:70%"},    {PNG, 1, ".png", ".png", ""},
        {TIFF, 2, ".tiff", ".tif", "Quality:8Bits"}, {BMP, 3, ".bmp", ".bmp", ""},
        {"unknown", wxNOT_FOUND, "", nullptr, ""},
    };
    Settings().m_jpegCompression = 70;
    const wxString stem = wxString::Format("pano%u", SaveCounter::Count());
    Dialog chosen;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szFormat);
        Settings().m_imageType = c.szFormat;
        Dialog opened;
        EXPECT_EQ(c.nEntry, opened.Format().GetSelection());
        EXPECT_EQ(stem + c.szOpened, opened.Name().GetValue());
        EXPECT_EQ(c.szLink, opened.LinkText());
        EXPECT_EQ(c.szFormat, opened.m_format);
        if (!c.szChosen)
            continue;
        chosen.Choose(c.nEntry);
        EXPECT_EQ(c.szFormat, chosen.m_format);
        EXPECT_EQ(stem + c.szChosen, chosen.Name().GetValue());
        EXPECT_EQ(stem, chosen.Name().GetStringSelection());
        EXPECT_EQ(c.szLink, chosen.LinkText());
    }
}

TEST_F(SaveDialog, NamesGetAnExtensionAreRefusedOrAskedFor)
{
    const std::string sThere = m_folder.File("out/there %s.jpg");
    WriteText(sThere, "old");
    std::filesystem::create_directory(m_folder.File("out/folder.jpg"));
    const std::string sReplace =
        "#0002002 File " + sThere + " already exists, would you like to replace it? ";
    const std::string sInvalid = "#0002001 Invalid file name or path.", NO_QUESTION;
    const struct {
        const char* szFormat;
        const char* szName;
        std::string sQuestion;
        int nAnswer;
        const char* szSaved; // null: not saved
    } cases[] = {
        {JPEG, "holiday", NO_QUESTION, wxID_NO, "holiday.jpg"},
        {JPEG, "%s%n.png", NO_QUESTION, wxID_NO, "%s%n.jpg"},
        {BMP, "\xC3\xA9t\xC3\xA9.old", NO_QUESTION, wxID_NO, "\xC3\xA9t\xC3\xA9.bmp"},
        {JPEG, "folder", NO_QUESTION, wxID_NO, "folder.jpg"}, // is no file
        {JPEG, "there %s", sReplace, wxID_NO, nullptr},
        {JPEG, "there %s", sReplace, wxID_YES, "there %s.jpg"},
        {JPEG, ".jpg", sInvalid, wxID_YES, nullptr},
        {JPEG, "../stolen.jpg", sInvalid, wxID_YES, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        Settings().m_imageType = c.szFormat;
        const unsigned nSaves = SaveCounter::Count();
        std::string sQuestion;
        const ModalAnswer hook([&](wxDialog& dialog) {
            const auto* pBox = dynamic_cast<wxMessageDialog*>(&dialog);
            if (pBox)
                sQuestion += pBox->GetMessage().utf8_string();
            return static_cast<int>(pBox ? c.nAnswer : wxID_NONE);
        });
        Dialog dialog;
        EXPECT_EQ(c.szSaved != nullptr,
                  dialog.Save([&] { dialog.Name().SetValue(wxString::FromUTF8(c.szName)); }));
        EXPECT_EQ(c.sQuestion, sQuestion);
        EXPECT_EQ(nSaves + (c.szSaved ? 1 : 0), SaveCounter::Count());
        if (c.szSaved) {
            EXPECT_EQ(Out(c.szSaved), dialog.m_path);
        }
        EXPECT_EQ("old", ReadText(sThere)) << "nothing is deleted here";
    }
}

TEST_F(SaveDialog, MakesTheFolder)
{
    WriteText(m_folder.File("file"), "no folder");
    const struct {
        const char* szFolder;
        bool bMade;
    } cases[] = {{"n\xC3\xA9w/", true}, {"file/one", false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szFolder);
        const LogRecorder errors;
        const FailureRecorder log;
        const wxString before = Settings().m_fullName;
        Dialog dialog;
        EXPECT_EQ(c.bMade, dialog.Save([&] {
            dialog.Folder().GetTextCtrl()->SetValue(m_folder.WideFile(c.szFolder));
        }));
        EXPECT_EQ(c.bMade ? m_folder.WideFile(c.szFolder) : before, Settings().m_fullName);
        if (c.bMade) {
            EXPECT_TRUE(std::filesystem::is_directory(m_folder.File(c.szFolder)));
            EXPECT_THAT(errors.Lines(), IsEmpty());
        } else {
            EXPECT_THAT(errors.Lines(), ElementsAre("make dir error!"));
            EXPECT_THAT(log.Lines(), ElementsAre(HasSubstr(m_folder.File(c.szFolder))));
        }
    }
    Settings().m_fullName = m_folder.WideFile("gone/");
    EXPECT_TRUE(Dialog().Save());
    EXPECT_TRUE(std::filesystem::is_directory(m_folder.File("gone"))) << "that of the settings";
}

TEST_F(SaveDialog, LinksOpenTheOptionsWhichCountIfConfirmed)
{
    int nAnswer = wxID_CANCEL;
    const ModalAnswer hook([&nAnswer](wxDialog& dialog) {
        if (auto* const pJpeg = dynamic_cast<JPEGCompressionSettings*>(&dialog)) {
            EXPECT_EQ(95, pJpeg->m_slider->GetValue());
            pJpeg->m_slider->SetValue(40);
        } else {
            auto& tiff = dynamic_cast<TiffOptionsDlg&>(dialog);
            EXPECT_EQ(wxNOT_FOUND, tiff.m_bitDepthChoice->GetSelection());
            EXPECT_EQ(wxNOT_FOUND, tiff.m_compressionChoice->GetSelection());
            tiff.m_bitDepthChoice->SetSelection(0);
            tiff.m_compressionChoice->SetSelection(1);
        }
        return nAnswer;
    });
    Settings().m_bitDepth = 12; // the settings may hold any
    Settings().m_compressionType = -1;
    wxImage picture(400, 300);
    Dialog dialog(&picture);
    const auto options = [&dialog](int nFormat) {
        dialog.Choose(nFormat);
        dialog.Follow();
        return std::tuple(dialog.LinkText().utf8_string(), dialog.m_quality, dialog.m_bits,
                          dialog.m_compression);
    };
    EXPECT_EQ(std::tuple("Quality:95%", 95, 12, -1), options(0));
    EXPECT_EQ(std::tuple("Quality:12Bits", 95, 12, -1), options(2));
    nAnswer = wxID_OK;
    EXPECT_EQ(std::tuple("Quality:40%", 40, 12, -1), options(0));
    EXPECT_EQ(std::tuple("Quality:8 Bits", 40, 8, 1), options(2));
    options(1);
    Dialog(nullptr).Follow();
    EXPECT_EQ(4, hook.Count()) << "a format without options, or no picture";
}

TEST_F(SaveDialog, AnswersPointerAndKeys)
{
    int nOptions = 0;
    const ModalAnswer hook([&](wxDialog& dialog) {
        const bool bOptions = dynamic_cast<TiffOptionsDlg*>(&dialog) != nullptr;
        nOptions += bOptions;
        return static_cast<int>(bOptions ? wxID_CANCEL : wxID_NONE);
    });
    Settings().m_imageType = TIFF;
    Dialog dialog;
    dialog.CallAfter([&] {
        ShowAndWait(dialog);
        Click(dialog.Link(), MiddleOf(dialog.Link()));
        EXPECT_EQ(1, nOptions);
        MoveTo(dialog.Name(), MiddleOf(dialog.Name()));
        EXPECT_EQ(dialog.Name().GetValue().BeforeLast('.'), dialog.Name().GetStringSelection());
        dialog.Name().SetFocus();
        for (const int nKey : {WXK_END + 0, int('/'), int('x')})
            TypeKey(nKey);
        EXPECT_TRUE(dialog.Name().GetValue().EndsWith(".tiffx")) << "no character of paths";
        TypeKey(WXK_RETURN);
        WaitUntilEnded(dialog);
    });
    EXPECT_EQ(wxID_OK, dialog.ShowModal());
}

TEST(SaveProposal, Names)
{
    const struct {
        const char* szName;
        int nStem; // -1: no extension
        bool bFileName;
    } cases[] = {{"holiday", -1, true}, {"a.b.c", 3, true},        {"a..", 2, true},
                 {".jpg", 0, false},    {".hidden.jpg", 7, false}, {"..", 1, false}};
    for (const auto& c : cases) {
        EXPECT_EQ(c.bFileName, IsFileName(c.szName)) << c.szName;
        const auto nStem = StemLength(c.szName);
        EXPECT_EQ(c.nStem, nStem ? static_cast<int>(*nStem) : -1) << c.szName;
    }
    EXPECT_EQ("/a.b/pano0.tif", WithExtension("/a.b/pano0", "tif"));
    for (const char cExcluded : std::string("*?\\/:\"<>|"))
        EXPECT_FALSE(IsFileName(std::string("a") + cExcluded + "b.jpg")) << cExcluded;
}
