// The dialog with the options of TIFF files.
#include "Widgets/TiffOptionsDlg.h"

#include "tests/support/Gui.h"

#include <gmock/gmock.h>
#include <wx/choice.h>

#include <string>
#include <vector>

using namespace LS::Tests;
using testing::ElementsAre;

namespace {

std::vector<std::string> Entries(const wxChoice& list)
{
    std::vector<std::string> vEntries;
    for (const wxString& entry : list.GetStrings())
        vEntries.push_back(entry.utf8_string());
    return vEntries;
}

} // namespace

TEST(TiffOptionsDlg, OffersDepthAndCompressions)
{
    const TiffOptionsDlg dialog(nullptr, wxID_ANY, "Tiff Options");
    EXPECT_THAT(Entries(*dialog.m_bitDepthChoice), ElementsAre("8bits"));
    EXPECT_THAT(Entries(*dialog.m_compressionChoice), ElementsAre("None", "Deflate", "Packbits"));
    EXPECT_EQ(0, dialog.m_bitDepthChoice->GetSelection());
    EXPECT_EQ(0, dialog.m_compressionChoice->GetSelection());
    EXPECT_EQ(dialog.FindWindow(wxID_OK), dialog.GetDefaultItem());
    EXPECT_EQ("&OK", dialog.FindWindow(wxID_OK)->GetLabel());
    EXPECT_EQ("&Cancel", dialog.FindWindow(wxID_CANCEL)->GetLabel());
    EXPECT_EQ("dialog", dialog.GetName());
    EXPECT_NE(0, dialog.GetExtraStyle() & wxWS_EX_BLOCK_EVENTS);
}

TEST(TiffOptionsDlg, EndsWithTheButtonPressed)
{
    for (const int nButton : {wxID_OK, wxID_CANCEL}) {
        SCOPED_TRACE(nButton);
        TiffOptionsDlg dialog(nullptr, wxID_ANY, "Tiff Options");
        dialog.m_bitDepthChoice->SetSelection(wxNOT_FOUND);
        dialog.m_compressionChoice->SetSelection(2);
        dialog.CallAfter([&dialog, nButton] {
            ShowAndWait(dialog);
            wxWindow& button = *dialog.FindWindow(nButton);
            Click(button, wxPoint(button.GetSize().x / 2, button.GetSize().y / 2));
        });
        EXPECT_EQ(nButton, dialog.ShowModal());
        EXPECT_EQ(wxNOT_FOUND, dialog.m_bitDepthChoice->GetSelection());
        EXPECT_EQ(2, dialog.m_compressionChoice->GetSelection());
    }
}
