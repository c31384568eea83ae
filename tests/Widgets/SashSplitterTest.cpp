// The splitter under the pointer.
#include "Widgets/SashSplitter.h"

#include "tests/support/Gui.h"

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/uiaction.h>

#include <string>

using namespace LS::Tests;
using LS::Widgets::wxSashSplitterWindow;

namespace {

constexpr int MINIMUM = 110;
constexpr int SASH = 8;

class SashSplitter : public testing::Test {
protected:
    static void SetUpTestSuite() { LS::Widgets::WidenSashes(); }
    ~SashSplitter() override { delete m_frame; }

    void Show(wxSplitMode mode, double gravity = 1.0)
    {
        m_splitter->SetSashGravity(gravity);
        m_splitter->SetMinimumPaneSize(MINIMUM);
        if (mode == wxSPLIT_VERTICAL)
            m_splitter->SplitVertically(m_first, m_second, -200);
        else
            m_splitter->SplitHorizontally(m_first, m_second, -200);
        ShowAndWait(*m_frame);
    }

    wxPoint Handle() const { return {m_splitter->GetSashPosition() + 3, m_splitter->GetClientSize().y / 2}; }
    wxPoint OffHandle() const { return {m_splitter->GetSashPosition() + 3, 20}; }

    wxColour Pixel(wxPoint at) const
    {
        Pump(20);
        const wxImage shown = Screenshot(*m_splitter);
        return {shown.GetRed(at.x, at.y), shown.GetGreen(at.x, at.y), shown.GetBlue(at.x, at.y)};
    }

    // What of the arrow's widest row is white.
    std::string Arrow() const
    {
        Pump(20);
        const wxImage shown = Screenshot(*m_splitter);
        const int top = (m_splitter->GetClientSize().y - 63) / 2;
        std::string row;
        for (int x = 0; x < 7; ++x)
            row += shown.GetRed(m_splitter->GetSashPosition() + x, top + 31) == 255 ? '*' : '.';
        return row;
    }

    wxFrame* m_frame = new wxFrame(nullptr, wxID_ANY, "splitter", wxDefaultPosition, {640, 480});
    wxSashSplitterWindow* m_splitter = new wxSashSplitterWindow(m_frame);
    wxPanel* m_first = new wxPanel(m_splitter);
    wxPanel* m_second = new wxPanel(m_splitter);
};

} // namespace

TEST_F(SashSplitter, SashIsEightPixelsWide)
{
    wxSplitterWindow plain(m_frame, wxID_ANY);
    EXPECT_EQ(SASH, m_splitter->GetSashSize());
    EXPECT_NE(SASH, plain.GetSashSize());
    EXPECT_TRUE(m_splitter->IsExpanded());
    EXPECT_EQ("sashsplitter", m_splitter->GetName());
}

TEST_F(SashSplitter, PaintsSashAndHandle)
{
    Show(wxSPLIT_VERTICAL);
    const wxColour grey(128, 128, 128);
    const int sash = m_splitter->GetSashPosition();
    EXPECT_EQ(grey, Pixel({sash, 20}));
    EXPECT_EQ(grey, Pixel({sash + SASH - 1, 20}));
    EXPECT_NE(grey, Pixel({sash - 1, 20}));
    EXPECT_NE(grey, Pixel({sash + SASH, 20}));
    EXPECT_NE(grey, Pixel({sash + 3, 1}));
    EXPECT_EQ(wxColour(0x9A, 0xB7, 0xC6), Pixel(Handle() - wxPoint(0, 20)));
    EXPECT_EQ("..****.", Arrow());
}

TEST_F(SashSplitter, HandleCollapsesAndBringsBackTheMinimum)
{
    Show(wxSPLIT_VERTICAL);
    ASSERT_EQ(200 - SASH, m_second->GetSize().x);

    Click(*m_splitter, Handle());
    EXPECT_FALSE(m_splitter->IsExpanded());
    EXPECT_EQ(1, m_second->GetSize().x);
    EXPECT_EQ(1, m_splitter->GetMinimumPaneSize());
    EXPECT_EQ(".****..", Arrow());

    Click(*m_splitter, Handle());
    EXPECT_TRUE(m_splitter->IsExpanded());
    EXPECT_EQ(MINIMUM, m_second->GetSize().x);
    EXPECT_EQ(MINIMUM, m_splitter->GetMinimumPaneSize());
    EXPECT_EQ("..****.", Arrow());
}

TEST_F(SashSplitter, DragMovesTheSashAndKeepsTheMinimum)
{
    Show(wxSPLIT_VERTICAL);
    const int sash = m_splitter->GetSashPosition();
    Drag(*m_splitter, OffHandle(), OffHandle() - wxPoint(60, 0));
    EXPECT_EQ(sash - 60, m_splitter->GetSashPosition());
    EXPECT_TRUE(m_splitter->IsExpanded());

    Drag(*m_splitter, OffHandle(), wxPoint(m_splitter->GetClientSize().x - 5, 20));
    EXPECT_EQ(MINIMUM, m_second->GetSize().x);
    Drag(*m_splitter, OffHandle(), {5, 20});
    EXPECT_EQ(MINIMUM, m_first->GetSize().x);

    // A press on the handle is no drag.
    const int before = m_splitter->GetSashPosition();
    Drag(*m_splitter, Handle(), Handle() + wxPoint(50, 0));
    EXPECT_NE(before + 50, m_splitter->GetSashPosition());
    EXPECT_FALSE(m_splitter->IsExpanded());
}

TEST_F(SashSplitter, SashFollowsThePointerDuringADrag)
{
    Show(wxSPLIT_VERTICAL);
    Click(*m_splitter, Handle());
    ASSERT_FALSE(m_splitter->IsExpanded());

    const int sash = m_splitter->GetSashPosition();
    wxUIActionSimulator simulator;
    MoveTo(*m_splitter, OffHandle());
    simulator.MouseDown();
    Pump();
    EXPECT_TRUE(m_splitter->IsExpanded()) << "for the time of the drag";
    MoveTo(*m_splitter, OffHandle() - wxPoint(20, 0));
    MoveTo(*m_splitter, wxPoint(sash - 100 + 3, 20));
    EXPECT_EQ(sash - 100, m_splitter->GetSashPosition());
    simulator.MouseUp();
    Pump();
    EXPECT_EQ(sash - 100, m_splitter->GetSashPosition());
    EXPECT_FALSE(m_splitter->IsExpanded()) << "the minimum is still one pixel";

    // The next click opens the pane at the minimum size that it had before the collapse.
    wxMilliSleep(450);
    Click(*m_splitter, Handle());
    EXPECT_TRUE(m_splitter->IsExpanded());
    EXPECT_EQ(MINIMUM, m_second->GetSize().x);
}

TEST_F(SashSplitter, LostCaptureEndsADragOfACollapsedPane)
{
    Show(wxSPLIT_VERTICAL);
    Click(*m_splitter, Handle());
    MoveTo(*m_splitter, OffHandle());
    wxUIActionSimulator().MouseDown();
    Pump();
    ASSERT_TRUE(m_splitter->HasCapture());
    m_splitter->ReleaseMouse();
    wxMouseCaptureLostEvent lost(m_splitter->GetId());
    m_splitter->ProcessWindowEvent(lost);
    EXPECT_FALSE(m_splitter->IsExpanded());
    wxUIActionSimulator().MouseUp();
    Pump();
    wxMilliSleep(450);
    Click(*m_splitter, Handle());
    EXPECT_EQ(MINIMUM, m_second->GetSize().x);
}

TEST_F(SashSplitter, GravityGivesTheFirstPaneAllExtraRoom)
{
    Show(wxSPLIT_VERTICAL);
    const int first = m_first->GetSize().x;
    m_frame->SetSize(m_frame->GetSize() + wxSize(100, 0));
    Pump(40);
    EXPECT_EQ(200 - SASH, m_second->GetSize().x);
    EXPECT_EQ(first + 100, m_first->GetSize().x);
}

TEST_F(SashSplitter, HorizontalSplitHasNoHandle)
{
    Show(wxSPLIT_HORIZONTAL);
    const wxColour grey(128, 128, 128);
    const wxSize client = m_splitter->GetClientSize();
    const int sash = client.y / 2;
    m_splitter->SetSashPosition(sash);
    const wxPoint middle(client.x / 2, sash + 3);
    EXPECT_EQ(grey, Pixel({20, sash}));
    EXPECT_EQ(grey, Pixel({20, sash + SASH - 1}));
    EXPECT_NE(grey, Pixel({1, sash + 3}));
    EXPECT_EQ(grey, Pixel(middle));

    // The rectangle that the handle would have if the split were vertical.
    const wxPoint asIfVertical(sash + 3, sash + 3);
    Click(*m_splitter, asIfVertical);
    EXPECT_EQ(sash, m_splitter->GetSashPosition());
    EXPECT_TRUE(m_splitter->IsExpanded());
    Drag(*m_splitter, middle, middle - wxPoint(0, 40));
    EXPECT_EQ(sash - 40, m_splitter->GetSashPosition());
}

TEST_F(SashSplitter, HiddenSashDoesNothing)
{
    Show(wxSPLIT_VERTICAL);
    const int sash = m_splitter->GetSashPosition();
    m_splitter->SetSashInvisible();
    for (const wxPoint at : {Handle(), OffHandle()}) {
        wxMouseEvent down(wxEVT_LEFT_DOWN);
        down.SetPosition(at);
        m_splitter->ProcessWindowEvent(down);
        EXPECT_FALSE(m_splitter->HasCapture());
    }
    EXPECT_EQ(sash, m_splitter->GetSashPosition());
    EXPECT_TRUE(m_splitter->IsExpanded());
}
