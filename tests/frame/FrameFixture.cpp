// The main window under test.
#include "tests/frame/FrameFixture.h"

#include "Util/PixelBuffer.h"
#include "Widgets/StaticPicture.h"
#include "Widgets/lsProgressDialog.h"
#include "Widgets/lsRadioButton.h"
#include "engine/HDRRoutine.h"
#include "frame/Messages.h"
#include "frame/SourceGrid.h"
#include "image/ImageCache.h"
#include "tests/cli/Photographs.h"
#include "tests/support/Screen.h"

#include <exiv2/exiv2.hpp>
#include <wx/app.h>
#include <wx/button.h>
#include <wx/choice.h>
#include <wx/combobox.h>
#include <wx/filedlg.h>
#include <wx/gauge.h>
#include <wx/menu.h>
#include <wx/msgdlg.h>
#include <wx/radiobut.h>
#include <wx/slider.h>
#include <wx/toolbar.h>

namespace LS::Tests {

namespace {

/// The first child of a kind, at any depth. @param window  may be null
template <typename Control> Control* Descendant(wxWindow* window)
{
    if (!window)
        return nullptr;
    for (wxWindow* const child : window->GetChildren()) {
        if (auto* const found = dynamic_cast<Control*>(child))
            return found;
        if (auto* const found = Descendant<Control>(child))
            return found;
    }
    return nullptr;
}

LS::Widgets::lsProgressDialog* ProgressOnShow()
{
    for (wxWindow* const window : wxTopLevelWindows)
        if (auto* const dialog = dynamic_cast<LS::Widgets::lsProgressDialog*>(window))
            return dialog->IsShown() ? dialog : nullptr;
    return nullptr;
}

void PressCancel(wxDialog& dialog)
{
    auto* const button = dynamic_cast<wxButton*>(dialog.FindWindow(wxID_CANCEL));
    wxCommandEvent press(wxEVT_BUTTON, wxID_CANCEL);
    press.SetEventObject(button);
    button->GetEventHandler()->ProcessEvent(press);
}

} // namespace

Box ErrorBox(const wxString& text)
{
    return {text, wxOK | wxICON_ERROR, wxID_OK};
}

Box SaveQuestion(int nAnswer)
{
    return {"#0002008 Do you want to save the image?", wxYES_NO | wxCANCEL | wxICON_INFORMATION, nAnswer};
}

ExpectedBoxes::ExpectedBoxes(std::vector<Box> boxes, ModalAnswer::Answer dialogs)
    : m_boxes(boxes.begin(), boxes.end()), m_dialogs(std::move(dialogs)),
      m_answer([this](wxDialog& dialog) { return Answer(dialog); })
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
    if (!message && m_dialogs)
        return m_dialogs(dialog);
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

ModalAnswer::Answer ChooseFile(const std::string& sPath, int nFormat)
{
    return [=](wxDialog& dialog) {
        auto& files = dynamic_cast<wxFileDialog&>(dialog);
        if (sPath.empty())
            return static_cast<int>(wxID_CANCEL);
        files.SetPath(wxString::FromUTF8(sPath));
        files.SetFilterIndex(nFormat);
        Pump(80); // the toolkit fills its answers in later
        return static_cast<int>(wxID_OK);
    };
}

CancelledJob::CancelledJob(int nPercent, Stop stop) : m_nPercent(nPercent), m_stop(stop)
{
    wxTheApp->Bind(wxEVT_IDLE, &CancelledJob::Look, this);
}

CancelledJob::~CancelledJob()
{
    wxTheApp->Unbind(wxEVT_IDLE, &CancelledJob::Look, this);
    EXPECT_TRUE(m_bPressed) << "no job came to " << m_nPercent << " percent";
}

void CancelledJob::Look(wxIdleEvent& event)
{
    event.Skip();
    auto* const dialog = m_bPressed ? nullptr : ProgressOnShow();
    if (!dialog || Descendant<wxGauge>(dialog)->GetValue() < m_nPercent)
        return;
    m_bPressed = true;
    for (const wxWindow* const window : wxTopLevelWindows)
        if (const auto* const frame = dynamic_cast<const LumiStrandHDRFrm*>(window)) {
            EXPECT_TRUE(frame->IsBusy());
        }
    if (m_stop == Stop::CloseBox) {
        dialog->Close();
        return;
    }
    PressCancel(*dialog);
    if (m_stop == Stop::ButtonTwice)
        PressCancel(*dialog);
}

void SetExif(const std::string& sPath, const std::map<std::string, std::string>& tags)
{
    Exiv2::ExifData data;
    for (const auto& [sKey, sText] : tags)
        data[sKey].setValue(sText);
    const auto file = Exiv2::ImageFactory::open(sPath);
    file->setExifData(data);
    file->writeMetadata();
}

FrameTest::FrameTest()
    : m_frame(new LumiStrandHDRFrm(nullptr, wxID_ANY, "Tolvanic Lumistrand - Create HDR Image")),
      m_unexpected([](wxDialog& dialog) {
          const auto* const message = dynamic_cast<wxMessageDialog*>(&dialog);
          if (!message && !dynamic_cast<wxFileDialog*>(&dialog))
              return wxID_NONE;
          ADD_FAILURE() << "unexpected: " << (message ? message->GetMessage() : dialog.GetTitle());
          return wxID_CANCEL;
      })
{
    ImageCache::SetMessageSink(ShowError);
    ShowAndWait(*m_frame);
}

FrameTest::~FrameTest()
{
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
    Pump(2);
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
    Pump(2); // idle time may take the button away
    auto& button = Find<LS::Widgets::lsRadioButton>(nId);
    if (!button.IsEnabled())
        return;
    wxCommandEvent event(lsEVT_RADIOBUTTON_CLICKED, nId);
    event.SetEventObject(&button);
    button.GetEventHandler()->ProcessEvent(event);
    Pump(2);
}

LS::Widgets::lsStaticPicture& FrameTest::Thumbnail() const
{
    return *Descendant<LS::Widgets::lsStaticPicture>(Grid().GetParent());
}

LS::Widgets::lsStaticPicture& FrameTest::Preview() const
{
    return *Descendant<LS::Widgets::lsStaticPicture>(Find<wxSlider>(ID_EXPOSURE).GetParent());
}

wxImage FrameTest::Shown(LS::Widgets::lsStaticPicture& control, wxSize size)
{
    Pump(3);
    const wxImage all = Screenshot(control);
    const wxSize room = all.GetSize() - size;
    return all.GetSubImage(wxRect(wxPoint(room.x / 2, room.y / 2), size));
}

bool FrameTest::PreviewShows(wxSize size, float fExposure, float fGamma) const
{
    std::int32_t nWidth = 0, nHeight = 0;
    Util::PixelBuffer pPixels(ToneMapScaled(fExposure, fGamma, &nWidth, &nHeight));
    return pPixels && SamePixels(wxImage(nWidth, nHeight, pPixels.release()), Shown(Preview(), size));
}

void FrameTest::ChooseCurveMode(int nId)
{
    Find<wxRadioButton>(nId).SetValue(true);
    wxCommandEvent event(wxEVT_RADIOBUTTON, nId);
    m_frame->GetEventHandler()->ProcessEvent(event);
}

void FrameTest::ChooseBitDepth(int nPosition)
{
    auto& choice = Find<wxChoice>(ID_BIT_DEPTH);
    choice.SetSelection(nPosition);
    wxCommandEvent event(wxEVT_CHOICE, ID_BIT_DEPTH);
    event.SetInt(nPosition);
    event.SetEventObject(&choice);
    choice.GetEventHandler()->ProcessEvent(event);
}

void FrameTest::Slide(int nId, int nPosition, wxEventType type) const
{
    auto& slider = Find<wxSlider>(nId);
    slider.SetValue(nPosition);
    const auto send = [&](wxEventType sent) {
        wxScrollEvent event(sent, nId, nPosition, wxHORIZONTAL);
        event.SetEventObject(&slider);
        slider.GetEventHandler()->ProcessEvent(event);
    };
    send(type);
    if (type != wxEVT_SCROLL_THUMBTRACK && type != wxEVT_SCROLL_CHANGED)
        send(wxEVT_SCROLL_CHANGED);
}

void FrameTest::EditCell(int nRow, int nColumn, const wxString& text) const
{
    wxGrid& grid = Grid();
    grid.SetGridCursor(nRow, nColumn);
    grid.EnableCellEditControl();
    const wxGridCellEditorPtr editor(grid.GetCellEditor(nRow, nColumn));
    auto* const box = dynamic_cast<wxComboBox*>(editor->GetControl());
    ASSERT_NE(nullptr, box) << "no editor at " << nRow << ", " << nColumn;
    if (box->HasFlag(wxCB_READONLY))
        box->SetStringSelection(text);
    else
        box->SetValue(text);
    grid.DisableCellEditControl();
}

void FrameTest::ClickCell(int nRow, int nColumn) const
{
    wxGridEvent event(Grid().GetId(), wxEVT_GRID_CELL_LEFT_CLICK, &Grid(), nRow, nColumn);
    Grid().GetEventHandler()->ProcessEvent(event);
}

bool FrameTest::AsksToSave() const
{
    int nAsked = 0;
    const ModalAnswer answer([&nAsked](wxDialog&) {
        ++nAsked;
        return wxID_CANCEL;
    });
    m_frame->AddFiles(Paths(Column(COL_PATH))); // asks as closing does
    return nAsked == 1;
}

void FrameTest::Load(const std::vector<std::string>& vsPaths) const
{
    m_frame->AddFiles(Paths(vsPaths));
    Pump(2);
}

std::vector<std::string> FrameTest::Column(int nColumn) const
{
    std::vector<std::string> vsTexts;
    vsTexts.reserve(static_cast<std::size_t>(Grid().GetNumberRows()));
    for (int nRow = 0; nRow < Grid().GetNumberRows(); ++nRow)
        vsTexts.push_back(Grid().GetCellValue(nRow, nColumn).utf8_string());
    return vsTexts;
}

wxArrayString FrameTest::Paths(const std::vector<std::string>& vsPaths)
{
    wxArrayString paths;
    for (const std::string& sPath : vsPaths)
        paths.Add(wxString::FromUTF8(sPath));
    return paths;
}

void FrameTest::AddByDialog(const std::string& sPath)
{
    const ModalAnswer choose(ChooseFile(sPath, 0));
    Press(wxID_ADD);
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
