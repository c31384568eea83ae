// The save dialog: what it proposes, refuses, asks and leaves behind.
#include "Widgets/SaveHDRImageDlg.h"

#include "Widgets/HyperlinkCtrl.h"
#include "Widgets/JPEGCompressionSettings.h"
#include "Widgets/TiffOptionsDlg.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/Gui.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/SamplePicture.h"
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
#include <vector>

using namespace LS::Tests;
using LS::Widgets::lsHyperlinkCtrl;
using LS::Widgets::lsHyperlinkEvent;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char* JPEG = "JPEG Image Format (*.jpeg;*.jpg)";
constexpr const char* PNG = "Portable Network Graphics (*.png)";
constexpr const char* TIFF = "Tiff Image Format (*.tiff;*.tif)";
constexpr const char* BMP = "Windows Bitmap (*.bmp)";
constexpr const char* TARGA = "Targa Files (*.tga)";

constexpr const char* INVALID_NAME = "#0002001 Invalid file name or path.";

/// Answers the dialog's questions with one button, and collects their texts.
class Questions {
public:
    explicit Questions(int nAnswer)
        : m_hook([this, nAnswer](wxDialog& dialog) {
              const auto* pBox = dynamic_cast<wxMessageDialog*>(&dialog);
              if (!pBox)
                  return static_cast<int>(wxID_NONE);
              EXPECT_EQ("Tolvanic Lumistrand", pBox->GetTitle());
              EXPECT_EQ(0x40A, pBox->GetMessageDialogStyle());
              m_vsTexts.push_back(pBox->GetMessage().utf8_string());
              return nAnswer;
          })
    {
    }

    const std::vector<std::string>& Texts() const { return m_vsTexts; }

private:
    std::vector<std::string> m_vsTexts;
    ModalAnswer m_hook;
};

/// The dialog with its controls by what they are for.
class Dialog : public SaveHDRImageDlg {
public:
    explicit Dialog(wxImage* pImage = nullptr)
        : SaveHDRImageDlg(nullptr, pImage, wxID_ANY, "Save Panoramic Image")
    {
    }

    wxChoice& Format() { return *static_cast<wxChoice*>(FindWindow(6699)); }
    lsHyperlinkCtrl& Link() { return *static_cast<lsHyperlinkCtrl*>(FindWindow(6700)); }
    wxTextCtrl& Name() { return *static_cast<wxTextCtrl*>(FindWindow(6701)); }
    wxDirPickerCtrl& Folder() { return *static_cast<wxDirPickerCtrl*>(FindWindow("dirpicker")); }

    void Press(int nButton)
    {
        wxCommandEvent event(wxEVT_BUTTON, nButton);
        FindWindow(nButton)->ProcessWindowEvent(event);
    }

    void Choose(int nFormat)
    {
        Format().SetSelection(nFormat);
        wxCommandEvent event(wxEVT_CHOICE, 6699);
        Format().ProcessWindowEvent(event);
    }

    void Follow()
    {
        lsHyperlinkEvent event(LS::Widgets::lsEVT_HYPERLINK, 6700);
        Link().ProcessWindowEvent(event);
    }

    /// Runs it, pressing Save after a preparation, and Cancel if it is still there then.
    bool Save(const std::function<void(Dialog&)>& prepare = {})
    {
        CallAfter([this, prepare] {
            if (prepare)
                prepare(*this);
            Press(wxID_SAVE);
            if (IsModal())
                Press(wxID_CANCEL);
        });
        return ShowModal() == wxID_OK;
    }

    bool SaveAs(const wxString& name)
    {
        return Save([&](Dialog& dialog) { dialog.Name().SetValue(name); });
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

TEST_F(SaveDialog, OnlyASaveCounts)
{
    const auto proposed = [](unsigned nMore) {
        return wxString::Format("pano%u.jpg", SaveCounter::Count() + nMore);
    };
    const wxString first = proposed(0), second = proposed(1);
    {
        Dialog dialog;
        EXPECT_EQ(first, dialog.Name().GetValue());
        dialog.CallAfter([&dialog] { dialog.Press(wxID_CANCEL); });
        EXPECT_EQ(wxID_CANCEL, dialog.ShowModal());
    }
    {
        Dialog dialog;
        EXPECT_EQ(first, dialog.Name().GetValue());
        EXPECT_EQ(Out(), dialog.Folder().GetPath());
        EXPECT_TRUE(dialog.Save());
        EXPECT_EQ(Out() + first, dialog.m_path);
    }
    EXPECT_EQ(second, Dialog().Name().GetValue());
    EXPECT_TRUE(std::filesystem::is_empty(m_folder.File("out"))) << "the frame writes the file";
}

TEST_F(SaveDialog, OpensWithTheSettings)
{
    const struct {
        const char* szFormat;
        int nSelection;
        const char* szSuffix;
        const char* szLink; // null: hidden
    } cases[] = {
        {JPEG, 0, ".jpg", "Quality:70%"},      {PNG, 1, ".png", nullptr},
        {TIFF, 2, ".tiff", "Quality:16Bits"},  {BMP, 3, ".bmp", nullptr},
        {TARGA, wxNOT_FOUND, ".tga", nullptr}, {"what nobody knows", wxNOT_FOUND, "", nullptr},
    };
    Settings().m_jpegCompression = 70;
    Settings().m_bitDepth = 16;
    Settings().m_compressionType = 1;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szFormat);
        Settings().m_imageType = c.szFormat;
        Dialog dialog;
        EXPECT_EQ(c.nSelection, dialog.Format().GetSelection());
        EXPECT_TRUE(dialog.Name().GetValue().EndsWith(c.szSuffix));
        EXPECT_EQ(c.szLink != nullptr, dialog.Link().IsShown());
        if (c.szLink) {
            EXPECT_EQ(c.szLink, dialog.Link().GetLabel());
        }
        EXPECT_TRUE(dialog.Save());
        EXPECT_EQ(c.szFormat, dialog.m_format);
        EXPECT_EQ(70, dialog.m_quality);
        EXPECT_EQ(16, dialog.m_bits);
        EXPECT_EQ(1, dialog.m_compression);
        EXPECT_EQ(c.szFormat, Settings().m_imageType);
    }
}

TEST_F(SaveDialog, FormatChangesNameAndLink)
{
    const struct {
        int nFormat;
        const char* szFormat;
        const char* szExtension;
        const char* szLink;
    } cases[] = {
        {1, PNG, ".png", nullptr},        {2, TIFF, ".tif", "Quality:8Bits"}, {3, BMP, ".bmp", nullptr},
        {0, JPEG, ".jpg", "Quality:95%"}, {3, BMP, ".bmp", nullptr},
    };
    Dialog dialog;
    ShowAndWait(dialog);
    const wxSize size = dialog.GetSize();
    const wxString stem = wxString::Format("pano%u", SaveCounter::Count());
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szFormat);
        dialog.Choose(c.nFormat);
        Pump();
        EXPECT_EQ(c.szFormat, dialog.m_format);
        EXPECT_EQ(Out() + stem + c.szExtension, dialog.m_path);
        EXPECT_EQ(stem + c.szExtension, dialog.Name().GetValue());
        EXPECT_EQ(stem, dialog.Name().GetStringSelection());
        EXPECT_EQ(c.szLink != nullptr, dialog.Link().IsShown());
        if (c.szLink) {
            EXPECT_EQ(c.szLink, dialog.Link().GetLabel());
        }
    }
    EXPECT_EQ(size, dialog.GetSize());
}

TEST_F(SaveDialog, NamesGetTheExtensionOfTheEntryShown)
{
    const struct {
        const char* szStored;
        const char* szName;
        const char* szSaved;
    } cases[] = {
        {JPEG, "holiday.jpeg", "holiday.jpg"},
        {JPEG, "holiday.JPG", "holiday.jpg"},
        {JPEG, "holiday.png", "holiday.jpg"},
        {JPEG, "holiday", "holiday.jpg"},
        {JPEG, "%s%n", "%s%n.jpg"},
        {TIFF, "holiday.tiff", "holiday.tif"},
        {BMP, "\xC3\xA9t\xC3\xA9.old", "\xC3\xA9t\xC3\xA9.bmp"},
        {TARGA, "holiday.tga", "holiday.tga"},
        {TARGA, "holiday", "holiday"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        Settings().m_imageType = c.szStored;
        Dialog dialog;
        EXPECT_TRUE(dialog.SaveAs(wxString::FromUTF8(c.szName)));
        EXPECT_EQ(Out(c.szSaved), dialog.m_path);
        EXPECT_EQ(Out(), Settings().m_fullName);
    }
}

TEST_F(SaveDialog, RefusesWhatIsNoName)
{
    const unsigned nSaves = SaveCounter::Count();
    for (const int nAnswer : {wxID_YES, wxID_NO})
        for (const char* szName : {"", ".jpg", "..", "../stolen.jpg", "/tmp/stolen.jpg", "a\\b", "a:b.jpg",
                                   "a*.jpg", "what?", "<a>", "a|b", "\"a\""}) {
            SCOPED_TRACE(szName);
            const Questions questions(nAnswer);
            EXPECT_FALSE(Dialog().SaveAs(szName));
            EXPECT_THAT(questions.Texts(), ElementsAre(INVALID_NAME));
        }
    EXPECT_EQ(nSaves, SaveCounter::Count());
    EXPECT_EQ(Out(), Settings().m_fullName);
}

TEST_F(SaveDialog, ExcludedCharactersCantBeTyped)
{
    Dialog dialog;
    const auto passes = [&dialog](unsigned char cTyped) {
        wxKeyEvent event(wxEVT_CHAR);
        event.m_uniChar = cTyped;
        event.m_keyCode = cTyped;
        event.SetEventObject(&dialog.Name());
        dialog.Name().ProcessWindowEvent(event);
        return event.GetSkipped();
    };
    for (const unsigned char cTyped : std::string("*?\\/:\"<>|"))
        EXPECT_FALSE(passes(cTyped)) << cTyped;
    for (const unsigned char cTyped : std::string("aZ0.- _%"))
        EXPECT_TRUE(passes(cTyped)) << cTyped;
}

TEST_F(SaveDialog, AsksBeforeItReplaces)
{
    WriteText(m_folder.File("out/there %s.jpg"), "old");
    const std::string sQuestion = "#0002002 File " + m_folder.File("out/there %s.jpg") +
                                  " already exists, would you like to replace it? ";
    const struct {
        int nAnswer;
        bool bSaved;
    } cases[] = {{wxID_NO, false}, {wxID_YES, true}};
    for (const auto& c : cases) {
        const Questions questions(c.nAnswer);
        Dialog dialog;
        EXPECT_EQ(c.bSaved, dialog.SaveAs("there %s"));
        EXPECT_THAT(questions.Texts(), ElementsAre(sQuestion));
        EXPECT_EQ(3U, ReadBytes(m_folder.File("out/there %s.jpg")).size()) << "nothing is deleted here";
    }

    std::filesystem::create_directory(m_folder.File("out/folder.jpg"));
    const Questions questions(wxID_NO);
    EXPECT_TRUE(Dialog().SaveAs("folder.jpg")) << "a folder is no file";
    EXPECT_THAT(questions.Texts(), IsEmpty());
}

TEST_F(SaveDialog, MakesTheFolder)
{
    WriteText(m_folder.File("file"), "no folder");
    const struct {
        const char* szFolder;
        bool bMade;
    } cases[] = {{"new", true},       {"n\xC3\xA9w/", true}, {"new/one", true},
                 {"gone/one", false}, {"file", false},       {"file/one", false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szFolder);
        const LogRecorder errors;
        const FailureRecorder log;
        const unsigned nSaves = SaveCounter::Count();
        const wxString before = Settings().m_fullName;
        Dialog dialog;
        const std::string sFolder = m_folder.File(c.szFolder);
        EXPECT_EQ(c.bMade, dialog.Save([&](Dialog& shown) {
            shown.Folder().GetTextCtrl()->SetValue(m_folder.WideFile(c.szFolder));
            shown.Name().SetValue("a.jpg");
        }));
        if (c.bMade) {
            EXPECT_TRUE(std::filesystem::is_directory(sFolder));
            const std::filesystem::path plain = std::filesystem::path(sFolder) / "";
            EXPECT_EQ(plain.native(), Settings().m_fullName.utf8_string());
            EXPECT_EQ(plain.native() + "a.jpg", dialog.m_path.utf8_string());
            EXPECT_THAT(errors.Lines(), IsEmpty());
        } else {
            EXPECT_THAT(errors.Lines(), ElementsAre("make dir error!"));
            EXPECT_THAT(log.Lines(), ElementsAre(HasSubstr(sFolder)));
            EXPECT_EQ(before, Settings().m_fullName);
        }
        EXPECT_EQ(nSaves + (c.bMade ? 1 : 0), SaveCounter::Count());
    }
}

TEST_F(SaveDialog, ShowsAndMakesTheMissingFolderOfTheSettings)
{
    Settings().m_fullName = m_folder.WideFile("first/");
    Dialog dialog;
    EXPECT_EQ(m_folder.File("first/"), dialog.Folder().GetTextCtrl()->GetValue().utf8_string());
    EXPECT_TRUE(dialog.Save());
    EXPECT_TRUE(std::filesystem::is_directory(m_folder.File("first")));
}

TEST_F(SaveDialog, QualityLinkOpensTheCompareDialog)
{
    int nAnswer = wxID_CANCEL;
    const ModalAnswer hook([&](wxDialog& dialog) {
        auto& options = dynamic_cast<JPEGCompressionSettings&>(dialog);
        EXPECT_EQ("JPEG Compression Settings", options.GetTitle());
        EXPECT_EQ(95, options.m_slider->GetValue());
        options.m_slider->SetValue(40);
        return nAnswer;
    });
    wxImage picture = SamplePicture({400, 300});
    Dialog dialog(&picture);
    dialog.Follow();
    EXPECT_EQ(95, dialog.m_quality);
    EXPECT_EQ("Quality:95%", dialog.Link().GetLabel());
    nAnswer = wxID_OK;
    dialog.Follow();
    EXPECT_EQ(40, dialog.m_quality);
    EXPECT_EQ("Quality:40%", dialog.Link().GetLabel());
    EXPECT_EQ(95, Settings().m_jpegCompression);

    Dialog(nullptr).Follow();
    dialog.Choose(1);
    dialog.Follow();
    dialog.Format().SetSelection(wxNOT_FOUND);
    dialog.Follow();
    EXPECT_EQ(2, hook.Count()) << "no picture, or a format without options";
}

TEST_F(SaveDialog, DepthLinkOpensTheTiffOptions)
{
    const struct {
        int nBits, nCompression;     // from the settings
        int nShownDepth, nShownComp; // in the options dialog
        int nChosenComp;
        int nBitsAfter, nCompressionAfter;
        const char* szOpened;
        const char* szConfirmed;
    } cases[] = {
        {8, 2, 0, 2, 1, 8, 1, "Quality:8Bits", "Quality:8 Bits"},
        {16, 0, wxNOT_FOUND, 0, 0, 16, 0, "Quality:16Bits", "Quality:16 Bits"},
        {12, 7, wxNOT_FOUND, wxNOT_FOUND, wxNOT_FOUND, 16, 7, "Quality:12Bits", "Quality:16 Bits"},
        {8, -1, 0, wxNOT_FOUND, 2, 8, 2, "Quality:8Bits", "Quality:8 Bits"},
    };
    Settings().m_imageType = TIFF;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szOpened);
        Settings().m_bitDepth = c.nBits;
        Settings().m_compressionType = c.nCompression;
        int nAnswer = wxID_CANCEL;
        const ModalAnswer hook([&](wxDialog& options) {
            auto& tiff = dynamic_cast<TiffOptionsDlg&>(options);
            EXPECT_EQ("Tiff Options", tiff.GetTitle());
            EXPECT_EQ(c.nShownDepth, tiff.m_bitDepthChoice->GetSelection());
            EXPECT_EQ(c.nShownComp, tiff.m_compressionChoice->GetSelection());
            tiff.m_compressionChoice->SetSelection(c.nChosenComp);
            return nAnswer;
        });
        Dialog dialog;
        dialog.Follow();
        EXPECT_EQ(c.szOpened, dialog.Link().GetLabel());
        EXPECT_EQ(c.nCompression, dialog.m_compression);
        nAnswer = wxID_OK;
        dialog.Follow();
        EXPECT_EQ(c.szConfirmed, dialog.Link().GetLabel());
        EXPECT_EQ(c.nBitsAfter, dialog.m_bits);
        EXPECT_EQ(c.nCompressionAfter, dialog.m_compression);
        dialog.Choose(2);
        EXPECT_EQ(wxString::Format("Quality:%dBits", c.nBitsAfter), dialog.Link().GetLabel());
    }
}

TEST_F(SaveDialog, AnswersThePointer)
{
    int nOptions = 0;
    const ModalAnswer hook([&](wxDialog& dialog) {
        if (!dynamic_cast<TiffOptionsDlg*>(&dialog))
            return static_cast<int>(wxID_NONE);
        ++nOptions;
        return static_cast<int>(wxID_CANCEL);
    });
    const auto middle = [](wxWindow& window) {
        return wxPoint(window.GetSize().x / 2, window.GetSize().y / 2);
    };
    Settings().m_imageType = TIFF;
    Dialog dialog;
    dialog.CallAfter([&] {
        ShowAndWait(dialog);
        dialog.Name().SetSelection(0, 0);
        MoveTo(dialog.Link(), middle(dialog.Link()));
        EXPECT_EQ("", dialog.Name().GetStringSelection());
        MoveTo(dialog.Name(), middle(dialog.Name()));
        EXPECT_EQ(dialog.Name().GetValue().BeforeLast('.'), dialog.Name().GetStringSelection());
        Click(dialog.Link(), middle(dialog.Link()));
        EXPECT_EQ(1, nOptions);

        dialog.Name().SetValue("plain");
        dialog.Name().SetSelection(1, 2);
        MoveTo(dialog.Name(), middle(dialog.Name()));
        EXPECT_EQ("l", dialog.Name().GetStringSelection()) << "a name without an extension";
        wxWindow& save = *dialog.FindWindow(wxID_SAVE);
        Click(save, middle(save));
        if (dialog.IsModal())
            dialog.Press(wxID_CANCEL);
    });
    EXPECT_EQ(wxID_OK, dialog.ShowModal());
    EXPECT_EQ(Out("plain.tif"), dialog.m_path);
}

TEST_F(SaveDialog, ControlsAsOthersFindThem)
{
    Dialog dialog;
    EXPECT_EQ("dialog", dialog.GetName());
    EXPECT_NE(0, dialog.GetExtraStyle() & wxWS_EX_BLOCK_EVENTS);
    EXPECT_EQ(dialog.FindWindow(wxID_SAVE), dialog.GetDefaultItem());
    EXPECT_EQ("&Save", dialog.FindWindow(wxID_SAVE)->GetLabel());
    EXPECT_EQ("&Cancel", dialog.FindWindow(wxID_CANCEL)->GetLabel());
    EXPECT_EQ("choice", dialog.Format().GetName());
    EXPECT_EQ("text", dialog.Name().GetName());
    EXPECT_EQ("lsHyperlinkCtrl", dialog.Link().GetName());
    EXPECT_EQ(4U, dialog.Format().GetCount());
    for (const char* szLabel : {"File Format:", "File Name:", "Destination Path:"})
        EXPECT_NE(nullptr, wxWindow::FindWindowByLabel(szLabel, &dialog)) << szLabel;
    EXPECT_GE(dialog.Folder().GetTextCtrl()->GetSize().x, 300);
}

} // namespace
