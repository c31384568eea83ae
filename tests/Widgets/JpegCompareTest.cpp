// The JPEG quality dialog with a real pointer: its crop, its two views and its slider.
#include "Widgets/JPEGCompressionSettings.h"

#include "Widgets/CropView.h"
#include "Widgets/JpegRoundTrip.h"
#include "Widgets/lsJpegCQCtrl.h"
#include "tests/Widgets/WidgetTest.h"
#include "tests/support/SamplePicture.h"
#include "tests/support/Screen.h"

#include <wx/log.h>
#include <wx/slider.h>

using namespace LS::Tests;

namespace {

constexpr int ORIGINAL = 6030, COMPRESSED = 6031;

wxImage AtQuality(wxImage picture, int nQuality)
{
    picture.SetOption(wxIMAGE_OPTION_QUALITY, nQuality);
    return JpegRoundTrip(picture);
}

class JpegDialog : public testing::Test {
protected:
    void Open(wxSize size, int nQuality)
    {
        m_picture = SamplePicture(size);
        m_dialog.SetImage(m_picture, nQuality);
        ShowAndWait(m_dialog);
    }

    wxWindow& View(int nId) { return *m_dialog.FindWindow(nId); }

    /// Whether both views show this part of the picture, the right one at the slider's quality.
    testing::AssertionResult Shows(wxRect crop)
    {
        const wxImage original = m_picture.GetSubImage(crop);
        const wxRect part(crop.GetSize());
        if (!SamePixels(original, Screenshot(View(ORIGINAL)).GetSubImage(part)))
            return testing::AssertionFailure() << "the original differs";
        if (!SamePixels(AtQuality(original, m_dialog.m_slider->GetValue()),
                        Screenshot(View(COMPRESSED)).GetSubImage(part)))
            return testing::AssertionFailure() << "the compressed picture differs";
        return testing::AssertionSuccess();
    }

    wxImage m_picture;
    JPEGCompressionSettings m_dialog{nullptr, wxID_ANY, "JPEG Compression Settings"};
};

} // namespace

TEST_F(JpegDialog, SliderAnswersThePointer)
{
    Open({400, 300}, 95);
    EXPECT_EQ(95, m_dialog.m_slider->GetValue());
    EXPECT_TRUE(Shows({110, 60, 180, 180}));
    m_dialog.SetImage(wxImage(), 70);
    EXPECT_EQ(95, m_dialog.m_slider->GetValue()) << "an invalid image changes nothing";
    // Pages towards the left end, or a jump there: the user's setting decides.
    const wxSize size = m_dialog.m_slider->GetClientSize();
    for (int nY = size.y / 2; nY < size.y && m_dialog.m_slider->GetValue() == 95; nY += 6)
        Click(*m_dialog.m_slider, {size.x / 4, nY});
    EXPECT_LT(m_dialog.m_slider->GetValue(), 95);
    EXPECT_TRUE(Shows({110, 60, 180, 180}));
}

TEST_F(JpegDialog, DragInEitherViewMovesBoth)
{
    Open({400, 300}, 60);
    {
        const HeldButton hand(View(ORIGINAL), {90, 90});
        MoveTo(View(ORIGINAL), {100, 95});
        EXPECT_TRUE(Shows({100, 55, 180, 180})) << "while the drag goes on";
    }
    {
        const HeldButton again(View(COMPRESSED), {90, 90});
        MoveTo(View(COMPRESSED), {60, 70});
    }
    EXPECT_TRUE(Shows({130, 75, 180, 180}));
}

TEST_F(JpegDialog, SmallPictureStaysPut)
{
    Open({120, 90}, 30);
    const HeldButton hand(View(ORIGINAL), {60, 60});
    MoveTo(View(ORIGINAL), {40, 45});
    EXPECT_TRUE(Shows({0, 0, 120, 90}));
    EXPECT_EQ(218, Screenshot(View(COMPRESSED)).GetRed(120, 45)) << "grey around it";
}

TEST_F(JpegDialog, KeysAndDialogsEndADrag)
{
    for (const int nKey : {WXK_ESCAPE, WXK_RETURN}) {
        m_dialog.CallAfter([&] {
            Open({400, 300}, 95);
            auto& view = View(ORIGINAL);
            const wxCursor open = view.GetCursor();
            const HeldButton hand(view, {90, 90});
            EXPECT_TRUE(view.HasCapture());
            EXPECT_FALSE(view.GetCursor().IsSameAs(open)) << "it grips";
            wxDialog box(&m_dialog, wxID_ANY, "Box", wxPoint(800, 200));
            box.CallAfter([&box] { box.EndModal(wxID_OK); });
            box.ShowModal();
            EXPECT_FALSE(view.HasCapture());
            EXPECT_TRUE(view.GetCursor().IsSameAs(open));
            m_dialog.m_slider->SetFocus();
            TypeKey(nKey);
            WaitUntilEnded(m_dialog);
        });
        EXPECT_EQ(nKey == WXK_RETURN ? wxID_OK : wxID_CANCEL, m_dialog.ShowModal());
    }
}

TEST_F(JpegDialog, CanGoDuringADrag)
{
    Open({400, 300}, 95);
    const HeldButton hand(View(ORIGINAL), {90, 90});
    View(ORIGINAL).Destroy();
    EXPECT_EQ(nullptr, wxWindow::GetCapture());
}

TEST(CropView, FollowsTheHandInsideThePicture)
{
    const struct {
        const char* name;
        wxPoint origin, from, to;
        wxSize picture;
        wxPoint moved;
    } cases[] = {
        {"against the hand", {110, 60}, {90, 90}, {100, 95}, {400, 300}, {100, 55}},
        {"onto the first column and row", {110, 60}, {0, 0}, {110, 60}, {400, 300}, {0, 0}},
        {"over them: dropped, not shortened", {110, 60}, {0, 0}, {111, 61}, {400, 300}, {110, 60}},
        {"onto the last column and row", {110, 60}, {110, 60}, {0, 0}, {400, 300}, {220, 120}},
        {"over one edge only", {110, 60}, {0, 0}, {111, 7}, {400, 300}, {110, 53}},
        {"picture narrower than a view", {0, 60}, {90, 90}, {91, 91}, {100, 300}, {0, 59}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.moved, DraggedOrigin(c.origin, c.from, c.to, c.picture));
        // At scale 2 every length is twice as large.
        EXPECT_EQ(c.moved * 2,
                  DraggedOrigin(c.origin * 2, c.from * 2, c.to * 2, c.picture * 2, 2 * VIEW_SIDE));
    }
}

TEST(JpegRoundTrip, LosesMoreAtLowerQuality)
{
    const wxImage picture = SamplePicture({180, 120});
    double dLast = 256;
    for (const int nQuality : {0, 30, 95}) {
        const double dLoss = MeanDifference(picture, AtQuality(picture, nQuality));
        EXPECT_LT(dLoss, dLast) << nQuality;
        dLast = dLoss;
    }
    EXPECT_LT(dLast, 4); // at 95
    const wxLogNull quiet;
    EXPECT_FALSE(AtQuality(wxImage(65501, 1), 90).IsOk()) << "the format ends at 65500";
}
