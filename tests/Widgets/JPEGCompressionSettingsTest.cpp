// The JPEG quality dialog with a real pointer: what its two views show.
#include "Widgets/JPEGCompressionSettings.h"

#include "Widgets/CropView.h"
#include "Widgets/lsJpegCQCtrl.h"
#include "tests/support/Gui.h"
#include "tests/support/SamplePicture.h"
#include "tests/support/Screen.h"

#include <gtest/gtest.h>
#include <wx/mstream.h>
#include <wx/slider.h>
#include <wx/statbox.h>

using namespace LS::Tests;

namespace {

constexpr int ID_SLIDER = 6029;
constexpr int ID_ORIGINAL = 6030;
constexpr int ID_COMPRESSED = 6031;

/// A crop as the encoder leaves it at a quality.
wxImage Encoded(wxImage crop, int nQuality)
{
    crop.SetOption(wxIMAGE_OPTION_QUALITY, nQuality);
    wxMemoryOutputStream file;
    EXPECT_TRUE(crop.SaveFile(file, wxBITMAP_TYPE_JPEG));
    wxMemoryInputStream bytes(file);
    return wxImage(bytes, wxBITMAP_TYPE_JPEG);
}

class JpegDialog : public testing::Test {
protected:
    void Open(wxSize size, int nQuality)
    {
        m_picture = SamplePicture(size);
        m_dialog = new JPEGCompressionSettings(nullptr, wxID_ANY, "JPEG Compression Settings");
        m_dialog->SetImage(m_picture, nQuality);
        ShowAndWait(*m_dialog);
    }

    void TearDown() override
    {
        m_dialog->Destroy();
        Pump();
    }

    wxWindow& View(int nId) { return *m_dialog->FindWindow(nId); }

    /// Whether both views show this part of the picture, the right one at the slider's quality.
    testing::AssertionResult Shows(wxRect crop)
    {
        const wxImage original = m_picture.GetSubImage(crop);
        const wxRect part(crop.GetSize());
        if (!SamePixels(original, Screenshot(View(ID_ORIGINAL)).GetSubImage(part)))
            return testing::AssertionFailure() << "the original differs";
        if (!SamePixels(Encoded(original, m_dialog->m_slider->GetValue()),
                        Screenshot(View(ID_COMPRESSED)).GetSubImage(part)))
            return testing::AssertionFailure() << "the compressed picture differs";
        return testing::AssertionSuccess();
    }

    void Scroll(wxEventType type, int nQuality)
    {
        m_dialog->m_slider->SetValue(nQuality);
        wxScrollEvent event(type, ID_SLIDER, nQuality, wxHORIZONTAL);
        event.SetEventObject(m_dialog->m_slider);
        m_dialog->m_slider->ProcessWindowEvent(event);
        Pump();
    }

    wxImage m_picture;
    JPEGCompressionSettings* m_dialog = nullptr;
};

} // namespace

TEST_F(JpegDialog, OpensAtTheGivenQuality)
{
    Open({400, 300}, 95);
    EXPECT_EQ(95, m_dialog->m_slider->GetValue());
    EXPECT_TRUE(Shows({110, 60, 180, 180}));
    EXPECT_EQ(ID_SLIDER, m_dialog->m_slider->GetId());
    EXPECT_EQ(wxSize(180, 180), View(ID_ORIGINAL).GetClientSize());
    EXPECT_EQ(wxSize(180, 180), View(ID_COMPRESSED).GetClientSize());
    EXPECT_EQ("Original Image", View(ID_ORIGINAL).GetParent()->GetLabel());
    EXPECT_EQ("Compressed Image", View(ID_COMPRESSED).GetParent()->GetLabel());
    EXPECT_EQ("&OK", m_dialog->FindWindow(wxID_OK)->GetLabel());
    EXPECT_EQ("&Cancel", m_dialog->FindWindow(wxID_CANCEL)->GetLabel());
}

TEST_F(JpegDialog, InvalidImageChangesNothing)
{
    Open({400, 300}, 40);
    m_dialog->SetImage(wxImage(), 70);
    Pump();
    EXPECT_EQ(40, m_dialog->m_slider->GetValue());
    EXPECT_TRUE(Shows({110, 60, 180, 180}));
}

TEST_F(JpegDialog, NothingToShowIsNoTrouble)
{
    Open({400, 300}, 40);
    JPEGCompressionSettings empty(nullptr, wxID_ANY, "Empty");
    empty.SetImage(wxImage(), 70);
    wxScrollEvent scroll(wxEVT_SCROLL_THUMBTRACK, ID_SLIDER, 5, wxHORIZONTAL);
    empty.m_slider->ProcessWindowEvent(scroll);
    LS::Widgets::lsMoveJpegEvent move(LS::Widgets::lsEVT_MOVE_JPEG, ID_ORIGINAL);
    empty.FindWindow(ID_ORIGINAL)->ProcessWindowEvent(move);
    EXPECT_EQ(0, empty.m_slider->GetValue());
}

TEST_F(JpegDialog, EveryScrollCompressesAnew)
{
    Open({400, 300}, 95);
    const wxImage fine = Screenshot(View(ID_COMPRESSED));
    const wxEventType types[] = {
        wxEVT_SCROLL_TOP,      wxEVT_SCROLL_BOTTOM,     wxEVT_SCROLL_LINEUP,
        wxEVT_SCROLL_LINEDOWN, wxEVT_SCROLL_PAGEUP,     wxEVT_SCROLL_PAGEDOWN,
        wxEVT_SCROLL_CHANGED,  wxEVT_SCROLL_THUMBTRACK, wxEVT_SCROLL_THUMBRELEASE,
    };
    int nQuality = 0;
    for (const wxEventType type : types) {
        SCOPED_TRACE(nQuality);
        Scroll(type, nQuality);
        EXPECT_TRUE(Shows({110, 60, 180, 180}));
        nQuality += 12;
    }
    Scroll(wxEVT_SCROLL_CHANGED, 5);
    EXPECT_GT(MeanDifference(fine, Screenshot(View(ID_COMPRESSED))), 5);
}

TEST_F(JpegDialog, SliderAnswersThePointer)
{
    Open({400, 300}, 95);
    wxSlider& slider = *m_dialog->m_slider;
    // Pages towards the left end, or a jump there: the user's setting decides.
    const wxSize size = slider.GetClientSize();
    for (int nY = size.y / 2; nY < size.y && slider.GetValue() == 95; nY += 6)
        Click(slider, {size.x / 4, nY});
    EXPECT_LT(slider.GetValue(), 95);
    EXPECT_TRUE(Shows({110, 60, 180, 180}));
}

TEST_F(JpegDialog, DragInEitherViewMovesBoth)
{
    Open({400, 300}, 60);
    {
        const HeldButton hand(View(ID_ORIGINAL), {90, 90});
        MoveTo(View(ID_ORIGINAL), {100, 95});
        EXPECT_TRUE(Shows({100, 55, 180, 180})) << "while the drag goes on";
    }
    {
        const HeldButton hand(View(ID_COMPRESSED), {90, 90});
        MoveTo(View(ID_COMPRESSED), {60, 70});
    }
    EXPECT_TRUE(Shows({130, 75, 180, 180}));
    Scroll(wxEVT_SCROLL_CHANGED, 5);
    EXPECT_TRUE(Shows({130, 75, 180, 180})) << "the slider leaves the crop where it is";

    LS::Widgets::lsMoveJpegEvent outside(LS::Widgets::lsEVT_MOVE_JPEG, ID_ORIGINAL);
    outside.SetPosition({221, 0});
    View(ID_ORIGINAL).ProcessWindowEvent(outside);
    Pump();
    EXPECT_TRUE(Shows({130, 75, 180, 180})) << "no such place in the picture";
}

TEST_F(JpegDialog, SmallPictureStaysPut)
{
    Open({120, 90}, 30);
    const HeldButton hand(View(ID_ORIGINAL), {60, 60});
    MoveTo(View(ID_ORIGINAL), {40, 45});
    EXPECT_TRUE(Shows({0, 0, 120, 90}));
    const wxImage shot = Screenshot(View(ID_COMPRESSED));
    EXPECT_EQ(218, shot.GetRed(120, 45));
    EXPECT_EQ(218, shot.GetBlue(60, 90));
}

TEST_F(JpegDialog, EndsWithTheButtonPressed)
{
    Open({400, 300}, 95);
    m_dialog->Hide();
    for (const int nButton : {wxID_OK, wxID_CANCEL}) {
        SCOPED_TRACE(nButton);
        m_dialog->CallAfter([this, nButton] {
            ShowAndWait(*m_dialog);
            Scroll(wxEVT_SCROLL_CHANGED, 33);
            wxWindow& button = View(nButton);
            Click(button, wxPoint(button.GetSize().x / 2, button.GetSize().y / 2));
        });
        EXPECT_EQ(nButton, m_dialog->ShowModal());
        EXPECT_EQ(33, m_dialog->m_slider->GetValue());
    }
}
