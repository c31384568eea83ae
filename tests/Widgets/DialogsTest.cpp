// What the dialogs of this folder have in common: their language, and that others can tell they are up.
#include "Widgets/JPEGCompressionSettings.h"
#include "Widgets/ModalDialogs.h"
#include "Widgets/SaveHDRImageDlg.h"
#include "Widgets/TiffOptionsDlg.h"
#include "Widgets/lsProgressDialog.h"
#include "tests/Widgets/WidgetTest.h"
#include "tests/support/TempFolder.h"

#include <wx/translation.h>

#include <filesystem>
#include <vector>

using namespace LS::Tests;

namespace {

void AddLabels(const wxWindow& window, std::vector<wxString>& labels)
{
    for (const wxWindow* const pChild : window.GetChildren()) {
        if (!pChild->GetLabel().empty())
            labels.push_back(pChild->GetLabel());
        AddLabels(*pChild, labels);
    }
}

/// The labels of all dialogs.
std::vector<wxString> Labels()
{
    std::vector<wxString> labels;
    AddLabels(SaveHDRImageDlg(nullptr, nullptr, wxID_ANY, ""), labels);
    AddLabels(JPEGCompressionSettings(nullptr, wxID_ANY, ""), labels);
    AddLabels(TiffOptionsDlg(nullptr, wxID_ANY, ""), labels);
    LS::Widgets::lsProgressDialog progress("", "", 100, nullptr, wxPD_APP_MODAL);
    progress.Update(45);
    AddLabels(progress, labels);
    return labels;
}

} // namespace

TEST(Dialogs, EveryLabelIsTranslated)
{
    const TempFolder folder;
    std::filesystem::create_directory(folder.File("zh_CN"));
    std::filesystem::copy_file(LS_CATALOGUE_FOLDER "/zh_CN.mo", folder.File("zh_CN/texts.mo"));
    const std::vector<wxString> english = Labels();
    wxFileTranslationsLoader::AddCatalogLookupPathPrefix(folder.Path());
    wxTranslations::Set(new wxTranslations);
    wxTranslations::Get()->SetLanguage("zh_CN");
    EXPECT_TRUE(wxTranslations::Get()->AddCatalog("texts"));
    const std::vector<wxString> chinese = Labels();
    wxTranslations::Set(nullptr);
    ASSERT_EQ(english.size(), chinese.size());
    for (std::size_t i = 0; i < english.size(); ++i)
        EXPECT_NE(english[i], chinese[i]);
}

TEST(Dialogs, OneThatWasUpBeforeIsNoticed)
{
    wxDialog dialog(nullptr, wxID_ANY, "Up");
    dialog.CallAfter([&dialog] {
        EXPECT_TRUE(ModalDialogs().IsAnyUp());
        dialog.EndModal(wxID_OK);
    });
    dialog.ShowModal();
    EXPECT_FALSE(ModalDialogs().IsAnyUp());
}
