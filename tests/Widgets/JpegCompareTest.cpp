// The JPEG quality dialog with a real pointer: its crop, its two views and its slider.
#include "Widgets/JPEGCompressionSettings.h"

#include "Widgets/JpegRoundTrip.h"
#include "Widgets/lsJpegCQCtrl.h"
#include "tests/Widgets/WidgetTest.h"
#include "tests/support/Pixels.h"

#include <wx/slider.h>

using namespace LS::Tests;

namespace {

constexpr int ORIGINAL = 6030, COMPRESSED = 6031;

/// No two parts of it are equal, and compression changes each.
wxImage Texture(wxSize size)
{
    wxImage image(size);
    for (int y = 0; y < size.y; ++y)
        for (int x = 0; x < size.x; ++x)
            image.SetRGB(x, y, static_cast<unsigned char>(x * y / 7), static_cast<unsigned char>(x),
                         static_cast<unsigned char>(y));
    return image;
}

wxImage AtQuality(wxImage picture, int nQuality)
{
    picture.SetOption(wxIMAGE_OPTION_QUALITY, nQuality);
    return JpegRoundTrip(picture);
}

class JpegDialog : public testing::Test {
protected:
    void Open(wxSize size, int nQuality)
    {
        m_picture = Texture(size);
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

TEST_F(JpegDialog, DragInEitherViewMovesBothInsideThePicture)
{
    Open({400, 300}, 60);
    const struct {
        const char* szWhat;
        int nView;
        wxPoint moved, origin;
    } drags[] = {
        {"against the hand", ORIGINAL, {10, -5}, {100, 65}},
        {"in the other view", COMPRESSED, {-60, -40}, {160, 105}},
        {"over the last column: dropped, not shortened", ORIGINAL, {-61, 0}, {160, 105}},
        {"onto the last column and row", ORIGINAL, {-60, -15}, {220, 120}},
        {"over the first row, which the columns don't mind", ORIGINAL, {70, 121}, {150, 120}},
    };
    for (const auto& drag : drags) {
        SCOPED_TRACE(drag.szWhat);
        const HeldButton hand(View(drag.nView), {90, 90});
        MoveTo(View(drag.nView), wxPoint(90, 90) + drag.moved);
        EXPECT_TRUE(Shows({drag.origin, wxSize(180, 180)})) << "while the drag goes on";
    }
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
