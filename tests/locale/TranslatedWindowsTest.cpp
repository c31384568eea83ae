// Every window in every language: what is read there is translated, the toolkit's own words too.
#include "Util/Paths.h"
#include "Widgets/HyperlinkCtrl.h"
#include "Widgets/SaveHDRImageDlg.h"
#include "app/Language.h"
#include "app/LanguageTable.h"
#include "frame/FileDialogs.h"
#include "frame/LumiStrandHDRFrm.h"
#include "frame/Messages.h"
#include "tests/support/Gui.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <dlfcn.h>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>

#include <wx/app.h>
#include <wx/aui/auibook.h>
#include <wx/button.h>
#include <wx/choice.h>
#include <wx/control.h>
#include <wx/ctrlsub.h>
#include <wx/filefn.h>
#include <wx/filepicker.h>
#include <wx/grid.h>
#include <wx/msgdlg.h>
#include <wx/timer.h>
#include <wx/uiaction.h>

using namespace LS::Tests;

namespace {

using Texts = std::set<std::string>;

/// A function of the toolkit, whose headers aren't installed.
template <typename Result, typename... Arguments> Result Gtk(const char* szName, Arguments... arguments)
{
    return reinterpret_cast<Result (*)(Arguments...)>(dlsym(RTLD_DEFAULT, szName))(arguments...);
}

struct List {
    void* data;
    List* next;
    List* previous;
};

bool Is(void* widget, const char* szTypeFunction)
{
    return Gtk<int>("g_type_check_instance_is_a", widget, Gtk<std::size_t>(szTypeFunction)) != 0;
}

void Take(Texts& texts, const char* szText)
{
    if (szText)
        texts.insert(szText);
}

void Walk(void* widget, Texts& texts);

void WalkShown(void* widget, void* texts)
{
    if (Gtk<int>("gtk_widget_get_mapped", widget))
        Walk(widget, *static_cast<Texts*>(texts));
}

/// A menu that isn't open.
void WalkMenu(void* widget, void* texts)
{
    if (Gtk<int>("gtk_widget_get_visible", widget))
        Walk(widget, *static_cast<Texts*>(texts));
    if (Is(widget, "gtk_container_get_type"))
        Gtk<void>("gtk_container_forall", widget, &WalkMenu, texts);
}

void Walk(void* widget, Texts& texts)
{
    char* const szTip = Gtk<char*>("gtk_widget_get_tooltip_text", widget);
    Take(texts, szTip);
    Gtk<void>("g_free", szTip);
    if (Is(widget, "gtk_label_get_type"))
        Take(texts, Gtk<const char*>("gtk_label_get_text", widget));
    if (Is(widget, "gtk_menu_item_get_type"))
        if (void* const menu = Gtk<void*>("gtk_menu_item_get_submenu", widget))
            WalkMenu(menu, &texts);
    if (Is(widget, "gtk_container_get_type"))
        Gtk<void>("gtk_container_forall", widget, &WalkShown, static_cast<void*>(&texts));
}

void Take(Texts& texts, const wxString& text)
{
    texts.insert(text.utf8_string());
}

void WalkDrawn(const wxWindow& window, Texts& texts)
{
    if (!window.IsShown())
        return;
    Take(texts, wxControl::RemoveMnemonics(window.GetLabel()));
    if (const auto* const grid = dynamic_cast<const wxGrid*>(&window))
        for (int i = 0; i < grid->GetNumberCols(); ++i)
            Take(texts, grid->GetColLabelValue(i));
    if (const auto* const book = dynamic_cast<const wxAuiNotebook*>(&window))
        for (std::size_t i = 0; i < book->GetPageCount(); ++i)
            Take(texts, book->GetPageText(i));
    if (const auto* const list = dynamic_cast<const wxItemContainerImmutable*>(&window))
        for (const wxString& entry : list->GetStrings())
            Take(texts, entry);
    for (const wxWindow* const child : window.GetChildren())
        WalkDrawn(*child, texts);
}

/// What a user can read in the windows of this process that are on show now, the toolkit's own parts
/// included. Texts of fields and the names of files are the user's own, and are left out.
Texts VisibleTexts()
{
    Texts texts;
    auto* const windows = Gtk<List*>("gtk_window_list_toplevels");
    for (const List* entry = windows; entry; entry = entry->next)
        if (Gtk<int>("gtk_widget_get_mapped", entry->data)) {
            Take(texts, Gtk<const char*>("gtk_window_get_title", entry->data));
            Walk(entry->data, texts);
        }
    Gtk<void>("g_list_free", windows);
    for (const wxWindow* const window : wxTopLevelWindows)
        WalkDrawn(*window, texts);
    return texts;
}

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

/// Makes the locales of languages in a folder by the system's compiler, and lets them be found there.
void MakeLocales(const TempFolder& folder, const LanguageMap& languages)
{
    std::string sCommand;
    for (const auto& [description, nNumber] : languages) {
        const std::string sName = FindLanguageRow(nNumber)->szCanonical;
        sCommand += "localedef -i " + sName + " -f UTF-8 '" + folder.File(sName) + ".UTF-8' & ";
    }
    EXPECT_EQ(0, std::system((sCommand + "wait").c_str())); // NOLINT(bugprone-command-processor)
    setenv("LOCPATH", folder.Path().c_str(), 1);
}

} // namespace

TEST(TranslatedWindows, ShowNoEnglish)
{
    const std::wstring sProgram = LS::Util::FolderFromPath(LS::Util::WidePath(LS_CATALOGUE_FOLDER));
    LanguageChoice choice{FindLanguages(sProgram), nullptr};
    choice.languages.erase("Spanish (Modern)"); // the same texts as Spanish
    ASSERT_EQ(10U, choice.languages.size());
    const TempFolder locales;
    MakeLocales(locales, choice.languages);
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
