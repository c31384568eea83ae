// The main window under test.
#include "tests/frame/FrameFixture.h"

#include "Widgets/lsRadioButton.h"
#include "frame/FileDialogs.h"
#include "frame/Messages.h"
#include "image/ImageCache.h"
#include "tests/cli/Photographs.h"

#include <wx/menu.h>
#include <wx/msgdlg.h>
#include <wx/toolbar.h>

namespace LS::Tests {

ExpectedBoxes::ExpectedBoxes(std::vector<Box> boxes)
    : m_boxes(boxes.begin(), boxes.end()), m_answer([this](wxDialog& dialog) { return Answer(dialog); })
{
}

ExpectedBoxes::~ExpectedBoxes()
{
    for (const Box& box : m_boxes)
        ADD_FAILURE() << "did not come: " << box.text;
}

int ExpectedBoxes::Answer(wxDialog& dialog)
{
    const auto* const message = dynamic_cast<wxMessageDialog*>(&dialog);
    if (!message || m_boxes.empty()) {
        ADD_FAILURE() << "unexpected dialog: " << (message ? message->GetMessage() : dialog.GetTitle());
        return wxID_CANCEL;
    }
    constexpr long SHOWN = wxOK | wxYES_NO | wxCANCEL | wxICON_MASK;
    const Box box = m_boxes.front();
    m_boxes.pop_front();
    EXPECT_EQ(box.text, message->GetMessage());
    EXPECT_EQ(box.style & SHOWN, message->GetMessageDialogStyle() & SHOWN) << box.text;
    EXPECT_EQ("Tolvanic Lumistrand", message->GetTitle());
    return box.nAnswer;
}

FrameTest::FrameTest()
    : m_frame(new LumiStrandHDRFrm(nullptr, wxID_ANY, "Tolvanic Lumistrand - Create HDR Image"))
{
    ImageCache::SetMessageSink(ShowError);
    ShowAndWait(*m_frame);
}

FrameTest::~FrameTest()
{
    AnswerForImages({});
    ImageCache::SetMessageSink({});
    ImageCache::DestroyInstance();
    m_frame->Destroy();
    Pump();
}

void FrameTest::Command(int nId)
{
    if (!IsOn(nId))
        return;
    wxCommandEvent event(wxEVT_MENU, nId);
    m_frame->GetEventHandler()->ProcessEvent(event);
    Pump();
}

bool FrameTest::IsOn(int nId) const
{
    const bool bItem = m_frame->GetMenuBar()->IsEnabled(nId);
    if (m_frame->GetToolBar()->FindById(nId)) {
        EXPECT_EQ(bItem, m_frame->GetToolBar()->GetToolEnabled(nId)) << "menu item and tool differ: " << nId;
    }
    return bItem;
}

void FrameTest::Press(int nId)
{
    Pump(); // idle time may take the button away
    auto& button = Find<LS::Widgets::lsRadioButton>(nId);
    if (!button.IsEnabled())
        return;
    wxCommandEvent event(lsEVT_RADIOBUTTON_CLICKED, nId);
    event.SetEventObject(&button);
    button.GetEventHandler()->ProcessEvent(event);
    Pump();
}

wxArrayString FrameTest::Paths(const std::vector<std::string>& vsPaths)
{
    wxArrayString paths;
    for (const std::string& sPath : vsPaths)
        paths.Add(wxString::FromUTF8(sPath));
    return paths;
}

void FrameTest::ChooseImages(const std::vector<std::string>& vsPaths)
{
    AnswerForImages([paths = Paths(vsPaths)](const wxString&) {
        return paths.empty() ? std::nullopt : std::optional(paths);
    });
}

std::vector<std::string> FrameTest::Series(int nImages, wxSize size) const
{
    std::vector<std::string> vsPaths;
    for (int i = 0; i < nImages; ++i) {
        const int nShutter = 4 << (2 * (nImages - 1 - i));
        vsPaths.push_back(m_folder.File("image_" + std::to_string(i) + ".jpg"));
        WritePhotograph(vsPaths.back(),
                        {16.0 / nShutter, "1/" + std::to_string(nShutter), "8/1", size.x, size.y});
    }
    return vsPaths;
}

} // namespace LS::Tests
