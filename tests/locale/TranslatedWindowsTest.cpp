// Every window in every language: what is read there is translated, the toolkit's own words too.
#include "Util/Paths.h"
#include "Widgets/HyperlinkCtrl.h"
#include "Widgets/SaveHDRImageDlg.h"
#include "app/Language.h"
#include "app/LanguageTable.h"
#include "frame/FileDialogs.h"
#include "frame/LumiStrandHDRFrm.h"
#include "frame/Messages.h"
#include "tests/locale/VisibleTexts.h"
#include "tests/support/Gui.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>

#include <wx/app.h>
#include <wx/button.h>
#include <wx/choice.h>
#include <wx/filefn.h>
#include <wx/filepicker.h>
#include <wx/msgdlg.h>
#include <wx/timer.h>
#include <wx/uiaction.h>

using namespace LS::Tests;

namespace {

using Texts = std::set<std::string>;

/// Reads windows, modal ones while they are up.
class Reader : private wxTimer {
public:
    void Read() { m_texts.merge(VisibleTexts()); }

    /// @param show  shows a modal window, which is left by Escape once it is complete
    void Read(const std::function<void()>& show)
    {
        m_before = m_last = VisibleTexts();
        Start(100);
        show();
        Stop();
    }

    const Texts& Found() const { return m_texts; }

private:
    void Notify() override
    {
        Texts now = VisibleTexts();
        if (now != m_before && now == m_last) {
            m_texts.insert(now.begin(), now.end());
            wxUIActionSimulator().Char(WXK_ESCAPE);
        }
        m_last = std::move(now);
    }

    Texts m_texts, m_before, m_last;
};

void ReadFrame(Reader& reader, LumiStrandHDRFrm& frame)
{
    ShowAndWait(frame);
    reader.Read();
    const TempFolder folder;
    const wxString photograph = folder.File("a.jpg");
    wxImage(64, 48).SaveFile(photograph, wxBITMAP_TYPE_JPEG);
    frame.AddFiles(wxArrayString(1, &photograph));
    const auto readJob = [&reader](wxIdleEvent& event) {
        event.Skip();
        reader.Read();
    };
    wxTheApp->Bind(wxEVT_IDLE, readJob);
    frame.ProcessCommand(ID_CREATE_HDR);
    wxTheApp->Unbind(wxEVT_IDLE, readJob);
    reader.Read();
}

void ReadBoxes(Reader& reader)
{
    for (const long nButtons : {wxOK, wxYES_NO, wxYES_NO | wxCANCEL})
        reader.Read([=] {
            ShowMessage(wxGetTranslation("#0002008 Do you want to save the image?"), nButtons | wxICON_ERROR);
        });
}

void ReadSaveDialog(Reader& reader, LumiStrandHDRFrm& frame)
{
    wxImage picture(400, 300);
    SaveHDRImageDlg dialog(&frame, &picture, wxID_ANY, wxGetTranslation("Save Panoramic Image"));
    ShowAndWait(dialog);
    reader.Read();
    auto* const picker = dynamic_cast<wxDirPickerCtrl*>(dialog.FindWindow("dirpicker"));
    reader.Read([=] {
        wxCommandEvent press(wxEVT_BUTTON, picker->GetPickerCtrl()->GetId());
        press.SetEventObject(picker->GetPickerCtrl());
        picker->GetPickerCtrl()->ProcessWindowEvent(press);
    });
    auto& format = dynamic_cast<wxChoice&>(*dialog.FindWindow(6699));
    auto& link = *dialog.FindWindow(6700);
    for (const int nFormat : {0, 2})
        reader.Read([&] {
            format.SetSelection(nFormat);
            wxCommandEvent chosen(wxEVT_CHOICE, format.GetId());
            format.ProcessWindowEvent(chosen);
            LS::Widgets::lsHyperlinkEvent follow(LS::Widgets::lsEVT_HYPERLINK, link.GetId());
            link.ProcessWindowEvent(follow);
        });
}

Texts AllTexts()
{
    Reader reader;
    auto* const frame =
        new LumiStrandHDRFrm(nullptr, wxID_ANY, wxGetTranslation("Tolvanic Lumistrand - Create HDR Image"));
    ReadFrame(reader, *frame);
    ReadBoxes(reader);
    reader.Read([] { AskForImages("/"); });
    reader.Read([=] { AskForHdrFile(frame, "/"); });
    ReadSaveDialog(reader, *frame);
    frame->Destroy();
    Pump();
    return reader.Found();
}

/// Whether there is anything to translate.
bool HasLetters(const std::string& sText)
{
    return std::ranges::any_of(sText, [](unsigned char c) { return c > 0x7F || std::isalpha(c); });
}

/// Names, and texts that are stored and compared in the settings.
const Texts IN_NO_LANGUAGE{"Tolvanic Lumistrand",
                           "Tiff Options",
                           "Deflate",
                           "Packbits",
                           "JPEG Image Format (*.jpeg;*.jpg)",
                           "Portable Network Graphics (*.png)",
                           "Tiff Image Format (*.tiff;*.tif)",
                           "Windows Bitmap (*.bmp)"};

/// Words that are right as they are.
const std::map<std::string, Texts> AS_IN_ENGLISH{
    {"Dutch", {"OK", "Gamma:", "Help", "Type"}},
    {"French", {"OK", "Standard", "Type"}},
    {"German", {"OK", "Gamma:", "Standard", "Name", "Name:"}},
    {"Italian", {"OK", "Gamma:", "Standard", "File", "Home", "No"}},
    {"Japanese", {"OK"}},
    {"Polish", {"OK", "Gamma:"}},
    {"Portuguese (Brazilian)", {"OK"}},
    {"Russian", {"OK"}},
    {"Spanish", {"Gamma:", "No"}},
};

/// The locales of the languages, made by the system's compiler for them.
class Locales {
public:
    explicit Locales(const LanguageMap& languages)
    {
        std::string sCommand;
        for (const auto& [description, nNumber] : languages)
            sCommand += Compile(FindLanguageRow(nNumber)->szCanonical) + " & ";
        EXPECT_EQ(0, std::system((sCommand + "wait").c_str())); // NOLINT(bugprone-command-processor)
        setenv("LOCPATH", m_folder.Path().c_str(), 1);
    }
    Locales(const Locales&) = delete;
    Locales& operator=(const Locales&) = delete;
    ~Locales() { unsetenv("LOCPATH"); }

private:
    std::string Compile(const std::string& sName) const
    {
        return "localedef -i " + sName + " -f UTF-8 '" + m_folder.File(sName) + ".UTF-8'";
    }

    TempFolder m_folder;
};

} // namespace

TEST(TranslatedWindows, ShowNoEnglish)
{
    const std::wstring sProgram = LS::Util::FolderFromPath(LS::Util::WidePath(LS_CATALOGUE_FOLDER));
    LanguageChoice choice{FindLanguages(sProgram), nullptr};
    choice.languages.erase("Spanish (Modern)"); // the same texts as Spanish
    ASSERT_EQ(10U, choice.languages.size());
    const Locales locales(choice.languages);
    setenv("LANGUAGE", "en", 1); // the toolkit mustn't follow it
    wxSetWorkingDirectory("/");  // the file dialogs show its name

    const Texts english = AllTexts();
    for (const auto& [description, nNumber] : choice.languages) {
        ASSERT_TRUE(SetLanguage(description, sProgram, choice)) << description;
        Texts untranslated;
        const auto asInEnglish = AS_IN_ENGLISH.find(description.utf8_string());
        for (const std::string& sText : AllTexts())
            if (HasLetters(sText) && english.contains(sText) && !IN_NO_LANGUAGE.contains(sText) &&
                (asInEnglish == AS_IN_ENGLISH.end() || !asInEnglish->second.contains(sText)))
                untranslated.insert(sText);
        EXPECT_THAT(untranslated, testing::IsEmpty()) << description;
    }
}
