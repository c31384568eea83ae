// The main window under test.
#include "tests/frame/FrameFixture.h"

#include "Util/PixelBuffer.h"
#include "Widgets/lsRadioButton.h"
#include "engine/HDRRoutine.h"
#include "frame/Messages.h"
#include "frame/SourceGrid.h"
#include "image/ImageCache.h"
#include "tests/cli/Photographs.h"
#include "tests/cli/ProgramRun.h"
#include "tests/support/Pixels.h"

#include <wx/app.h>
#include <wx/aui/auibook.h>
#include <wx/choice.h>
#include <wx/filedlg.h>
#include <wx/gauge.h>
#include <wx/menu.h>
#include <wx/msgdlg.h>
#include <wx/radiobut.h>
#include <wx/slider.h>
#include <wx/toolbar.h>
#include <wx/uiaction.h>

namespace LS::Tests {

Box SaveQuestion(int nAnswer)
{
    return {"#0002008 Do you want to save the image?", nAnswer};
}

Box ReplaceQuestion(const std::string& sPath, int nAnswer)
{
    return {"#0002002 File " + wxString::FromUTF8(sPath) + " already exists, would you like to replace it? ",
            nAnswer};
}

ExpectedBoxes::ExpectedBoxes(const std::vector<Box>& boxes, ModalAnswer::Answer dialogs)
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
    if (!message && !dynamic_cast<wxFileDialog*>(&dialog))
        return wxID_NONE; // runs
    if (!message || m_boxes.empty()) {
        ADD_FAILURE() << "unexpected: " << (message ? message->GetMessage() : dialog.GetTitle());
        return wxID_CANCEL;
    }
    const Box box = m_boxes.front();
    m_boxes.pop_front();
    EXPECT_EQ(box.text.utf8_string(), message->GetMessage().utf8_string());
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

CancelledJob::CancelledJob(int nPercent) : m_nPercent(nPercent)
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
    wxWindow* const dialog = wxWindow::FindWindowByLabel("Please wait a moment...");
    if (m_bPressed || !dialog || !dialog->IsShown() ||
        dynamic_cast<wxGauge&>(*dialog->FindWindow("gauge")).GetValue() < m_nPercent)
        return;
    m_bPressed = true;
    auto& frame = dynamic_cast<LumiStrandHDRFrm&>(*dialog->GetParent());
    EXPECT_TRUE(frame.IsBusy());
    EXPECT_FALSE(frame.TakeDroppedFiles(wxArrayString(1, {"/no/such.jpg"})));
    wxCommandEvent press(wxEVT_BUTTON, wxID_CANCEL);
    dialog->FindWindow(wxID_CANCEL)->ProcessWindowEvent(press);
}

FrameTest::FrameTest()
    : m_frame(new LumiStrandHDRFrm(nullptr, wxID_ANY, "Tolvanic Lumistrand - Create HDR Image"))
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

wxWindow& FrameTest::Preview() const
{
    return *Find<wxSlider>(ID_EXPOSURE).GetParent()->FindWindow("staticPicture");
}

bool FrameTest::PreviewShows(wxSize size, float fExposure, float fGamma) const
{
    std::int32_t nWidth = 0, nHeight = 0;
    Util::PixelBuffer pPixels(ToneMapScaled(fExposure, fGamma, &nWidth, &nHeight));
    const wxImage expected = pPixels ? wxImage(nWidth, nHeight, pPixels.release()) : wxImage();
    for (int i = 0; i < 100; ++i) { // until it is painted
        Pump(3);
        const wxImage all = Screenshot(Preview());
        const wxSize room = all.GetSize() - size;
        if (SamePixels(expected, all.GetSubImage(wxRect(wxPoint(room.x / 2, room.y / 2), size))))
            return true;
    }
    return false;
}

void FrameTest::Command(int nId)
{
    if (IsOn(nId))
        m_frame->ProcessCommand(nId);
    Pump(2);
}

bool FrameTest::IsOn(int nId) const
{
    const bool bItem = m_frame->GetMenuBar()->IsEnabled(nId);
    EXPECT_EQ(bItem, m_frame->GetToolBar()->GetToolEnabled(nId)) << "menu item and tool differ: " << nId;
    return bItem;
}

void FrameTest::Send(int nId, wxEventType type, int nValue)
{
    wxWindow& control = Find<wxWindow>(nId);
    wxCommandEvent event(type, nId);
    event.SetEventObject(&control);
    event.SetInt(nValue);
    control.ProcessWindowEvent(event);
    Pump(2);
}

void FrameTest::Press(int nId)
{
    Pump(2); // idle time may take the button away
    if (Find<wxWindow>(nId).IsEnabled())
        Send(nId, lsEVT_RADIOBUTTON_CLICKED);
}

void FrameTest::ChooseCurveMode(int nId)
{
    Find<wxRadioButton>(nId).SetValue(true);
    Send(nId, wxEVT_RADIOBUTTON);
}

void FrameTest::ChooseBitDepth(int nPosition)
{
    Find<wxChoice>(ID_BIT_DEPTH).SetSelection(nPosition);
    Send(ID_BIT_DEPTH, wxEVT_CHOICE, nPosition);
}

void FrameTest::Slide(int nId, int nPosition)
{
    auto& slider = Find<wxSlider>(nId);
    slider.SetValue(nPosition);
    wxScrollEvent event(wxEVT_SCROLL_THUMBRELEASE, nId, nPosition, wxHORIZONTAL);
    slider.ProcessWindowEvent(event);
}

void FrameTest::ShowSources() const
{
    for (wxWindow* const child : m_frame->GetChildren())
        if (auto* const pages = dynamic_cast<wxAuiNotebook*>(child))
            pages->SetSelection(0);
}

void FrameTest::TypeIntoCell(int nRow, int nColumn, const std::string& sText) const
{
    ShowSources();
    Grid().SetFocus();
    Grid().SetGridCursor(nRow, nColumn);
    wxUIActionSimulator keyboard;
    keyboard.Text(sText.c_str());
    keyboard.Char(WXK_RETURN);
    Pump();
}

void FrameTest::ClickTick(int nRow) const
{
    ShowSources();
    wxGrid& grid = Grid();
    grid.MakeCellVisible(nRow, COL_ENABLED);
    const wxRect cell = grid.CellToRect(nRow, COL_ENABLED);
    Click(*grid.GetGridWindow(), grid.CalcScrolledPosition(cell.GetPosition() + cell.GetSize() / 2));
}

void FrameTest::Select(const std::vector<int>& rows) const
{
    Grid().ClearSelection();
    for (const int nRow : rows)
        Grid().SelectRow(nRow, true);
    Pump(2);
}

bool FrameTest::AsksToSave() const
{
    const ModalAnswer answer([](wxDialog&) { return wxID_CANCEL; });
    Load({}); // asks as closing does
    return answer.Count() == 1;
}

void FrameTest::Load(const std::vector<std::string>& vsPaths) const
{
    m_frame->AddFiles(Paths(vsPaths));
    Pump(2);
}

wxArrayString FrameTest::Paths(const std::vector<std::string>& vsPaths)
{
    wxArrayString paths;
    for (const std::string& sPath : vsPaths)
        paths.Add(wxString::FromUTF8(sPath));
    return paths;
}

std::vector<std::string> FrameTest::Series(wxSize size) const
{
    return WriteSeries(m_folder.Path(), size.x, size.y);
}

Bytes FrameTest::ByHeadless(std::vector<std::string> vsPaths, const std::vector<std::string>& vsOptions,
                            const std::string& sExtension) const
{
    const std::string sPath = m_folder.File("headless." + sExtension);
    vsPaths.insert(vsPaths.end(), vsOptions.begin(), vsOptions.end());
    vsPaths.insert(vsPaths.end(), {"--force", "-o", sPath});
    const ProgramRun run = RunProgram(vsPaths);
    EXPECT_EQ(0, run.code) << run.err;
    return ReadBytes(sPath);
}

} // namespace LS::Tests
