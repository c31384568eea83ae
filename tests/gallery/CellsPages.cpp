// The grid with its editors, both splitters, pictures and links.
#include "tests/gallery/Gallery.h"

#include "Widgets/GridCells.h"
#include "Widgets/HyperlinkCtrl.h"
#include "Widgets/SashSplitter.h"
#include "Widgets/StaticPicture.h"

#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/timer.h>

namespace LS::Gallery {

namespace {

using LS::Widgets::lsHyperlinkCtrl;
using LS::Widgets::lsStaticPicture;
using LS::Widgets::wxSashSplitterWindow;

wxFrame* NewFrame(const wxString& title, wxSize size)
{
    return new wxFrame(nullptr, wxID_ANY, title, wxDefaultPosition, size);
}

wxTopLevelWindow* GridPage()
{
    const wxString shutters[] = {"1/2000", "1/125", "1/2", "2/1"};
    wxFrame* const frame = NewFrame("Grid cells", {560, 260});
    auto* const grid = new wxGrid(frame, wxID_ANY);
    grid->CreateGrid(6, 3);
    grid->HideRowLabels();
    grid->SetDefaultRowSize(20, true);
    grid->SetColLabelValue(0, "");
    grid->SetColLabelValue(1, "Check boxes aligned");
    grid->SetColLabelValue(2, "Shutter");
    grid->SetColSize(0, 30);
    grid->SetColSize(1, 160);
    grid->SetColSize(2, 100);
    grid->SetColFormatFloat(2, -1, 4);
    const int alignments[] = {wxALIGN_LEFT, wxALIGN_CENTRE, wxALIGN_RIGHT};
    for (int row = 0; row < 6; ++row) {
        for (int col = 0; col < 2; ++col) {
            grid->SetCellRenderer(row, col, new lsGridCellBoolRenderer);
            grid->SetCellAlignment(row, col, col == 0 ? wxALIGN_CENTRE : alignments[row / 2], wxALIGN_CENTRE);
            grid->SetCellValue(row, col, row % 2 == 0 ? "1" : "0");
        }
        grid->SetCellEditor(row, 2, new wxGridCellNumChoiceEditor(4, shutters, 16, 0.0005F, true));
        grid->SetCellValue(row, 2, "0.016667");
    }
    grid->SetRowMinimalAcceptableHeight(5);
    grid->SetRowSize(4, 12);
    grid->SelectRow(1);
    grid->SetGridCursor(3, 2);
    // The editor closes again if the frame is still being laid out.
    auto* const timer = new wxTimer(frame);
    frame->Bind(wxEVT_TIMER, [grid](wxTimerEvent&) { grid->EnableCellEditControl(); });
    frame->Bind(wxEVT_DESTROY, [timer](wxWindowDestroyEvent& event) {
        timer->Stop();
        event.Skip();
    });
    timer->StartOnce(800);
    return frame;
}

wxPanel* NewPane(wxWindow* parent, const wxString& label)
{
    auto* const pane = new wxPanel(parent, wxID_ANY, {}, wxDefaultSize, wxTAB_TRAVERSAL | wxBORDER_SUNKEN);
    new wxStaticText(pane, wxID_ANY, label, {10, 10});
    return pane;
}

wxSashSplitterWindow* NewSplitter(wxSplitMode mode)
{
    LS::Widgets::WidenSashes();
    wxFrame* const frame = NewFrame("Splitter", {400, 260});
    auto* const splitter = new wxSashSplitterWindow(frame);
    splitter->SetSashGravity(1.0);
    splitter->SetMinimumPaneSize(110);
    wxPanel* const first = NewPane(splitter, "First pane");
    wxPanel* const second = NewPane(splitter, "Second pane");
    if (mode == wxSPLIT_VERTICAL)
        splitter->SplitVertically(first, second, -110);
    else
        splitter->SplitHorizontally(first, second, -1);
    return splitter;
}

wxTopLevelWindow* FrameOf(wxWindow* window)
{
    return dynamic_cast<wxTopLevelWindow*>(window->GetParent());
}

wxTopLevelWindow* HorizontalSplitterPage()
{
    return FrameOf(NewSplitter(wxSPLIT_HORIZONTAL));
}

wxTopLevelWindow* VerticalSplitterPage()
{
    return FrameOf(NewSplitter(wxSPLIT_VERTICAL));
}

wxTopLevelWindow* CollapsedSplitterPage()
{
    wxSashSplitterWindow* const splitter = NewSplitter(wxSPLIT_VERTICAL);
    splitter->CallAfter([splitter] {
        wxMouseEvent press(wxEVT_LEFT_DOWN);
        press.SetPosition({splitter->GetSashPosition() + 3, splitter->GetClientSize().y / 2});
        splitter->ProcessWindowEvent(press);
    });
    return FrameOf(splitter);
}

wxImage Gradient(int width, int height)
{
    wxImage image(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.SetRGB(x, y, static_cast<unsigned char>(255 * x / width),
                         static_cast<unsigned char>(255 * y / height), 128);
    return image;
}

wxTopLevelWindow* PicturePage()
{
    wxFrame* const frame = NewFrame("Static pictures", {720, 230});
    auto* const panel = new wxPanel(frame);
    auto* const row = new wxBoxSizer(wxHORIZONTAL);
    for (const wxSize size : {wxSize(0, 0), wxSize(60, 40), wxSize(600, 400), wxSize(200, 600)}) {
        auto* const picture = new lsStaticPicture(panel, wxID_STATIC, wxNullBitmap, wxDefaultPosition,
                                                  {160, 160}, wxBORDER_SUNKEN);
        row->Add(picture, 0, wxALL, 5);
        // An image is fitted once, so the control has to have its size by then.
        picture->Bind(wxEVT_SIZE, [picture, size](wxSizeEvent& event) {
            const wxImage image = size.x > 0 ? Gradient(size.x, size.y) : wxImage();
            picture->SetImage(&image);
            event.Skip();
        });
    }
    panel->SetSizer(row);
    return frame;
}

wxTopLevelWindow* LinkPage()
{
    wxFrame* const frame = NewFrame("Links", {300, 160});
    auto* const panel = new wxPanel(frame);
    auto* const column = new wxBoxSizer(wxVERTICAL);
    const auto add = [&](const wxString& label) {
        auto* const link = new lsHyperlinkCtrl(panel, wxID_ANY, label);
        column->Add(link, 0, wxALL, 10);
        return link;
    };
    add("A link as it starts");
    wxMouseEvent press(wxEVT_LEFT_DOWN);
    add("A visited link")->ProcessWindowEvent(press);
    wxMouseEvent enter(wxEVT_ENTER_WINDOW);
    add("A link under the pointer")->ProcessWindowEvent(enter);
    panel->SetSizer(column);
    return frame;
}

} // namespace

std::vector<Page> CellsPages()
{
    return {
        {"grid-cells", GridPage},
        {"splitter-horizontal", HorizontalSplitterPage},
        {"splitter-vertical", VerticalSplitterPage},
        {"splitter-collapsed", CollapsedSplitterPage},
        {"static-pictures", PicturePage},
        {"links", LinkPage},
    };
}

} // namespace LS::Gallery
