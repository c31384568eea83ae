// A compare view by itself: what it shows, and what it tells of a drag.
#include "Widgets/lsJpegCQCtrl.h"

#include "Widgets/CropView.h"
#include "tests/support/Gui.h"
#include "tests/support/SamplePicture.h"
#include "tests/support/Screen.h"

#include <gmock/gmock.h>
#include <wx/dialog.h>
#include <wx/frame.h>

#include <vector>

using namespace LS::Tests;
using LS::Widgets::lsEVT_MOVE_JPEG;
using LS::Widgets::lsJpegCQCtrl;
using LS::Widgets::lsMoveJpegEvent;

namespace {

constexpr int VIEW_ID = 4711;

/// A view on a frame of its own, and the moves that reach the frame.
class CompareView : public testing::Test {
protected:
    void SetUp() override
    {
        m_frame = new wxFrame(nullptr, wxID_ANY, "Compare", wxPoint(200, 200), wxSize(400, 400));
        m_view =
            new lsJpegCQCtrl(m_frame, VIEW_ID, wxPoint(60, 60), wxSize(VIEW_SIDE, VIEW_SIDE), wxBORDER_NONE);
        m_view->SetSize(60, 60, VIEW_SIDE, VIEW_SIDE); // a frame enlarges its only child
        m_frame->Bind(lsEVT_MOVE_JPEG, [this](lsMoveJpegEvent& event) {
            EXPECT_EQ(VIEW_ID, event.GetId());
            EXPECT_EQ(m_view, event.GetEventObject());
            m_vMoves.push_back(event.GetPosition());
        });
        ShowAndWait(*m_frame);
        m_view->SetSize(60, 60, VIEW_SIDE, VIEW_SIDE);
        Pump();
    }

    void TearDown() override
    {
        m_frame->Destroy();
        Pump();
    }

    void ShowPicture(wxSize size)
    {
        const wxImage picture = SamplePicture(size);
        m_view->SetImageSize(size.x, size.y);
        ASSERT_TRUE(m_view->SetBitmap(picture.GetSubImage(CentredCrop(size))));
        Pump();
    }

    wxFrame* m_frame = nullptr;
    lsJpegCQCtrl* m_view = nullptr;
    std::vector<wxPoint> m_vMoves;
};

/// What a view shows of a bitmap: all of it in the corner, and grey around it.
wxImage OnGrey(const wxImage& picture)
{
    wxImage shown = picture;
    return shown.Resize(wxSize(VIEW_SIDE, VIEW_SIDE), wxPoint(0, 0), 218, 218, 218);
}

} // namespace

TEST_F(CompareView, ShowsItsBitmapOnGrey)
{
    EXPECT_TRUE(SamePixels(OnGrey(wxImage(1, 1)).GetSubImage({1, 1, 179, 179}),
                           Screenshot(*m_view).GetSubImage({1, 1, 179, 179})))
        << "no bitmap yet";
    for (const wxSize size : {wxSize(180, 180), wxSize(100, 180), wxSize(180, 30), wxSize(1, 1)}) {
        SCOPED_TRACE(testing::Message() << size.x << " x " << size.y);
        const wxImage picture = SamplePicture(size);
        EXPECT_TRUE(m_view->SetBitmap(picture));
        Pump();
        EXPECT_TRUE(SamePixels(OnGrey(picture), Screenshot(*m_view)));
        EXPECT_FALSE(m_view->SetBitmap(wxImage()));
        Pump();
        EXPECT_TRUE(SamePixels(OnGrey(picture), Screenshot(*m_view))) << "after an invalid image";
    }
}

TEST_F(CompareView, DragMovesTheCrop)
{
    // Pointer positions of one drag, the first where the button goes down; what the last move tells.
    const struct {
        const char* name;
        wxSize picture;
        std::vector<wxPoint> vPointer;
        wxPoint origin;
    } cases[] = {
        {"against the hand", {400, 300}, {{90, 90}, {100, 95}, {110, 100}}, {90, 50}},
        {"to the very edge", {400, 300}, {{150, 90}, {40, 90}}, {220, 60}},
        {"a step over the edge is dropped whole", {400, 300}, {{50, 90}, {165, 90}}, {110, 60}},
        {"and the hand's place moves on", {400, 300}, {{50, 90}, {165, 90}, {155, 90}}, {120, 60}},
        {"outside the window", {400, 300}, {{170, 90}, {200, 100}}, {80, 50}},
        {"one direction at its edge", {180, 300}, {{90, 90}, {95, 80}}, {0, 70}},
        {"smaller than a view", {100, 60}, {{90, 50}, {70, 40}}, {0, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ShowPicture(c.picture);
        m_vMoves.clear();
        {
            const HeldButton hand(*m_view, c.vPointer.front());
            for (std::size_t i = 1; i < c.vPointer.size(); ++i)
                MoveTo(*m_view, c.vPointer[i]);
        }
        ASSERT_GE(m_vMoves.size(), c.vPointer.size() - 1);
        EXPECT_EQ(c.origin, m_vMoves.back());
    }
}

TEST_F(CompareView, TellsNothingWithoutADrag)
{
    MoveTo(*m_view, {80, 80});
    {
        const HeldButton hand(*m_view, {90, 90}); // no bitmap yet
        MoveTo(*m_view, {100, 100});
        EXPECT_FALSE(m_view->HasCapture());
    }
    ShowPicture({400, 300});
    {
        const HeldButton hand(*m_view, {90, 90}); // no motion
        EXPECT_TRUE(m_view->HasCapture());
    }
    EXPECT_FALSE(m_view->HasCapture());
    MoveTo(*m_view, {60, 60}); // no button
    EXPECT_THAT(m_vMoves, testing::IsEmpty());
}

TEST_F(CompareView, SecondDragMayFollowAtOnce)
{
    ShowPicture({400, 300});
    {
        const HeldButton hand(*m_view, {90, 90});
    }
    const HeldButton again(*m_view, {90, 90}); // a double click to the toolkit
    MoveTo(*m_view, {100, 95});
    ASSERT_FALSE(m_vMoves.empty());
    EXPECT_EQ(wxPoint(100, 55), m_vMoves.back());
}

TEST_F(CompareView, HandGripsWhileItDrags)
{
    ShowPicture({400, 300});
    const wxCursor open = m_view->GetCursor();
    ASSERT_TRUE(open.IsOk());
    {
        const HeldButton hand(*m_view, {90, 90});
        EXPECT_TRUE(m_view->GetCursor().IsOk());
        EXPECT_FALSE(m_view->GetCursor().IsSameAs(open));
    }
    EXPECT_TRUE(m_view->GetCursor().IsSameAs(open));
}

TEST_F(CompareView, DialogDuringADragEndsIt)
{
    ShowPicture({400, 300});
    const wxCursor open = m_view->GetCursor();
    const HeldButton hand(*m_view, {90, 90});
    ASSERT_TRUE(m_view->HasCapture());

    wxDialog box(m_frame, wxID_ANY, "Box", wxPoint(800, 200));
    box.CallAfter([&box] {
        Pump();
        box.EndModal(wxID_OK);
    });
    box.ShowModal();
    Pump();
    m_vMoves.clear();
    MoveTo(*m_view, {100, 100});
    EXPECT_FALSE(m_view->HasCapture());
    EXPECT_TRUE(m_view->GetCursor().IsSameAs(open));
    EXPECT_THAT(m_vMoves, testing::IsEmpty());
}

TEST_F(CompareView, CanGoDuringADrag)
{
    ShowPicture({400, 300});
    const HeldButton hand(*m_view, {90, 90});
    ASSERT_TRUE(m_view->HasCapture());
    m_view->Destroy();
    EXPECT_EQ(nullptr, wxWindow::GetCapture());
}

TEST_F(CompareView, QueuedMoveKeepsItsPosition)
{
    lsMoveJpegEvent move(lsEVT_MOVE_JPEG, VIEW_ID);
    move.SetEventObject(m_view);
    move.SetPosition({12, 34});
    m_view->GetEventHandler()->AddPendingEvent(move);
    Pump();
    EXPECT_THAT(m_vMoves, testing::ElementsAre(wxPoint(12, 34)));
}
