// The image button under a real pointer.
#include "Widgets/lsRadioButton.h"

#include "tests/support/Gui.h"

#include <gtest/gtest.h>
#include <wx/dcclient.h>
#include <wx/dcmemory.h>
#include <wx/dialog.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/uiaction.h>

#include <memory>
#include <string>

using namespace LS::Tests;
using LS::Widgets::lsRadioButton;

namespace {

const wxColour RED(250, 0, 0), BLUE(0, 0, 250);
const wxPoint INSIDE(12, 12), OUTSIDE(150, 150);

wxBitmap Plain(const wxColour& colour, int nSize = 20)
{
    wxImage image(nSize, nSize);
    image.SetRGB(wxRect(0, 0, nSize, nSize), colour.Red(), colour.Green(), colour.Blue());
    return {image};
}

std::string Name(const wxColour& colour)
{
    return colour.GetAsString(wxC2S_HTML_SYNTAX).ToStdString();
}

class RadioButton : public testing::Test {
protected:
    RadioButton()
        : m_frame(new wxFrame(nullptr, wxID_ANY, "Buttons", wxPoint(50, 50), wxSize(400, 300))),
          m_panel(new wxPanel(m_frame)), m_clicked(*m_frame, lsEVT_RADIOBUTTON_CLICKED),
          m_selected(*m_frame, lsEVT_RADIOBUTTON_SELECTED)
    {
        ShowAndWait(*m_frame);
        MoveTo(*m_panel, OUTSIDE); // from where the test before left the pointer
    }
    ~RadioButton() override
    {
        wxUIActionSimulator().MouseUp();
        m_frame->Destroy();
        Pump();
    }

    lsRadioButton& Add(long style, wxPoint at = wxPoint(20, 20))
    {
        auto* const button = new lsRadioButton(m_panel, 4711, Plain(RED), at, wxDefaultSize, style, "Tip");
        Pump();
        return *button;
    }

    /// Presses or releases the left button of the mouse.
    static void Down()
    {
        wxUIActionSimulator().MouseDown();
        Pump();
    }
    static void Up()
    {
        wxUIActionSimulator().MouseUp();
        Pump();
    }

    /// The events so far, as "clicked 1, selected 0".
    std::string Events() const
    {
        return "clicked " + std::to_string(m_clicked.Count()) + ", selected " +
               std::to_string(m_selected.Count());
    }

    wxFrame* m_frame;
    wxPanel* m_panel;
    EventCounter m_clicked, m_selected;
};

/// The colour of a pixel on the screen, as "#RRGGBB".
std::string ShownColour(wxWindow& window, wxPoint at)
{
    wxBitmap pixel(1, 1);
    wxMemoryDC dc(pixel);
    wxClientDC source(&window);
    dc.Blit(0, 0, 1, 1, &source, at.x, at.y);
    dc.SelectObject(wxNullBitmap);
    const wxImage image = pixel.ConvertToImage();
    return Name(wxColour(image.GetRed(0, 0), image.GetGreen(0, 0), image.GetBlue(0, 0)));
}

} // namespace

TEST_F(RadioButton, PushFiresOnceAtItsRelease)
{
    lsRadioButton& button = Add(lsRB_PUSH);
    MoveTo(button, INSIDE);
    Down();
    EXPECT_EQ("clicked 0, selected 0", Events());
    EXPECT_TRUE(button.GetValue());
    Up();
    EXPECT_EQ("clicked 1, selected 0", Events());
    EXPECT_FALSE(button.GetValue());
    EXPECT_FALSE(button.HasCapture());
    EXPECT_EQ(4711, m_clicked.Last().GetId());
    EXPECT_EQ(&button, m_clicked.Last().GetEventObject());
    EXPECT_EQ(0, m_clicked.Last().GetExtraLong());
}

TEST_F(RadioButton, PushCountsAReleaseOutside)
{
    lsRadioButton& button = Add(lsRB_PUSH);
    MoveTo(button, INSIDE);
    Down();
    MoveTo(*m_panel, OUTSIDE);
    Up();
    EXPECT_EQ("clicked 1, selected 0", Events());
}

TEST_F(RadioButton, DoubleClickOnPushFiresOnce)
{
    lsRadioButton& button = Add(lsRB_PUSH);
    MoveTo(button, INSIDE);
    wxUIActionSimulator().MouseDblClick();
    Pump(20);
    EXPECT_EQ("clicked 1, selected 0", Events());
    EXPECT_FALSE(button.GetValue());
}

TEST_F(RadioButton, ToggleFlipsWithEachPress)
{
    lsRadioButton& button = Add(lsRB_TOGGLE);
    for (int i = 1; i <= 3; ++i) {
        Click(button, INSIDE);
        EXPECT_EQ("clicked " + std::to_string(i) + ", selected 0", Events());
        EXPECT_EQ(i % 2, m_clicked.Last().GetInt());
        EXPECT_EQ(i % 2 == 1, button.GetValue());
    }
}

TEST_F(RadioButton, RadioIsSelectedOnceAndClearsItsGroup)
{
    lsRadioButton& first = Add(lsRB_GROUP);
    new wxPanel(m_panel, wxID_ANY, wxPoint(300, 200), wxSize(5, 5)); // strangers between them don't count
    lsRadioButton& second = Add(0, wxPoint(60, 20));
    lsRadioButton& other = Add(lsRB_GROUP, wxPoint(100, 20));
    other.SetValue(true);
    first.SetValue(true);
    first.SetFocus();
    Pump();

    Click(second, INSIDE);
    Click(second, INSIDE);
    EXPECT_EQ("clicked 0, selected 1", Events());
    EXPECT_FALSE(first.GetValue());
    EXPECT_TRUE(second.GetValue());
    EXPECT_TRUE(other.GetValue());
}

TEST_F(RadioButton, FocusFollowsTheValueWithinAGroup)
{
    lsRadioButton& first = Add(lsRB_GROUP);
    lsRadioButton& second = Add(0, wxPoint(60, 20));
    first.SetValue(true);
    first.SetFocus();
    Pump();
    second.SetValue(true);
    Pump();
    EXPECT_EQ(&second, wxWindow::FindFocus());
}

TEST_F(RadioButton, AutoRepeatFiresWhileHeld)
{
    lsRadioButton& button = Add(lsRB_PUSH | lsRB_AUTOREPEAT);
    MoveTo(button, INSIDE);
    Down();
    Pump(40); // 200 ms or more
    const int nTicks = m_clicked.Count();
    EXPECT_GE(nTicks, 4);
    EXPECT_EQ(1, m_clicked.Last().GetExtraLong());
    Up();
    const int nAtRelease = m_clicked.Count();
    EXPECT_EQ(0, m_clicked.Last().GetExtraLong());
    Pump(20);
    EXPECT_EQ(nAtRelease, m_clicked.Count());
}

TEST_F(RadioButton, LosingTheMouseGivesThePressUp)
{
    lsRadioButton& button = Add(lsRB_PUSH | lsRB_AUTOREPEAT);
    wxDialog dialog(m_frame, wxID_ANY, "In between");
    int nTicks = 0;
    button.Bind(lsEVT_RADIOBUTTON_CLICKED, [&](wxCommandEvent&) {
        if (++nTicks > 1)
            return;
        dialog.CallAfter([&] { dialog.EndModal(wxID_OK); });
        dialog.ShowModal(); // inside the timer's event
    });
    MoveTo(button, INSIDE);
    Down();
    Pump(40);
    EXPECT_EQ(1, nTicks);
    EXPECT_FALSE(button.GetValue());
    EXPECT_FALSE(button.HasCapture());
    Up();
    EXPECT_EQ(1, nTicks);
}

TEST_F(RadioButton, DisablingGivesThePressUp)
{
    const struct {
        const char* name;
        long nStyle;
        bool bParent;
    } cases[] = {
        {"the button", lsRB_PUSH, false},
        {"a button that repeats", lsRB_PUSH | lsRB_AUTOREPEAT, false},
        {"the parent of one that repeats", lsRB_PUSH | lsRB_AUTOREPEAT, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        lsRadioButton& button = Add(c.nStyle);
        wxWindow& disabled = c.bParent ? static_cast<wxWindow&>(*m_panel) : button;
        MoveTo(button, INSIDE);
        Down();
        disabled.Disable();
        Pump(10);
        const int nEvents = m_clicked.Count();
        Up();
        Pump(20);
        EXPECT_EQ(nEvents, m_clicked.Count());
        EXPECT_FALSE(button.GetValue());
        EXPECT_FALSE(button.HasCapture());
        disabled.Enable();
        button.Destroy();
    }
}

TEST_F(RadioButton, DisabledIgnoresTheMouse)
{
    for (const long nStyle : {static_cast<long>(lsRB_PUSH), static_cast<long>(lsRB_TOGGLE), 0L}) {
        lsRadioButton& button = Add(nStyle);
        button.Disable();
        Click(button, INSIDE);
        EXPECT_EQ("clicked 0, selected 0", Events());
        EXPECT_FALSE(button.GetValue());
        button.Destroy();
    }
}

TEST_F(RadioButton, KeysPressAndRelease)
{
    const struct {
        const char* name;
        long nStyle;
        const char* szEvents;
        int nKey;
        bool bValue;
    } cases[] = {
        {"space on a push button", lsRB_PUSH, "clicked 1, selected 0", WXK_SPACE, false},
        {"enter on a push button", lsRB_PUSH, "clicked 2, selected 0", WXK_RETURN, false},
        {"another key", lsRB_PUSH, "clicked 2, selected 0", 'A', false},
        {"space on a toggle", lsRB_TOGGLE, "clicked 3, selected 0", WXK_SPACE, true},
        {"enter on a radio button", 0, "clicked 3, selected 1", WXK_RETURN, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        lsRadioButton& button = Add(c.nStyle);
        button.SetFocus();
        Pump();
        if (HasWindowManager()) { // without one the keyboard may be nobody's
            wxUIActionSimulator().Char(c.nKey);
        } else {
            for (const wxEventType type : {wxEVT_KEY_DOWN, wxEVT_KEY_UP}) {
                wxKeyEvent key(type);
                key.m_keyCode = c.nKey;
                button.GetEventHandler()->ProcessEvent(key);
            }
        }
        Pump();
        EXPECT_EQ(c.szEvents, Events());
        EXPECT_EQ(c.bValue, button.GetValue());
        EXPECT_FALSE(button.HasCapture());
        button.Destroy();
    }
}

TEST_F(RadioButton, AKeyThatIsHeldFiresOnce)
{
    lsRadioButton& button = Add(lsRB_PUSH);
    button.SetFocus();
    Pump();
    const auto send = [&](wxEventType type) {
        wxKeyEvent key(type);
        key.m_keyCode = WXK_SPACE;
        button.GetEventHandler()->ProcessEvent(key);
    };
    send(wxEVT_KEY_DOWN);
    send(wxEVT_KEY_DOWN);
    EXPECT_EQ(1, m_clicked.Count());
    send(wxEVT_KEY_UP);
    send(wxEVT_KEY_DOWN);
    EXPECT_EQ(2, m_clicked.Count());
}

TEST_F(RadioButton, SizeFollowsItsParts)
{
    lsRadioButton& button = Add(lsRB_PUSH);
    EXPECT_EQ(wxSize(24, 24), button.GetSize());
    button.SetBitmapMargin(wxSize(3, 3), true);
    EXPECT_EQ(wxSize(26, 26), button.GetSize());
    button.SetMargins(wxSize(1, 1), true);
    EXPECT_EQ(wxSize(22, 22), button.GetSize());

    button.SetLabel("Label");
    EXPECT_EQ(button.GetTextExtent("Label").y + 22 + 1, button.GetBestSize().y);
    EXPECT_EQ("Label", button.GetLabel());
    EXPECT_EQ("lsRadioButton", button.GetName());
    EXPECT_EQ("Tip", button.GetToolTipText());

    EXPECT_EQ(wxSize(31, 24), Add(lsRB_PUSH | lsRB_SIDE_STRIP).GetSize());
    const lsRadioButton wide(m_panel, wxID_ANY, Plain(RED), wxDefaultPosition, wxSize(90, -1));
    EXPECT_EQ(wxSize(90, 24), wide.GetSize());
}

TEST_F(RadioButton, ShowsItsState)
{
    lsRadioButton& button = Add(lsRB_TOGGLE);
    const wxPoint picture(6, 7), margin(12, 22); // the margin below the picture
    const std::string background = ShownColour(*m_panel, OUTSIDE);
    EXPECT_EQ(Name(RED), ShownColour(button, picture));
    EXPECT_EQ(background, ShownColour(button, margin));

    button.SetValue(true);
    Pump();
    EXPECT_EQ(Name(*wxWHITE), ShownColour(button, margin));
    button.SetValue(false);
    Pump();
    EXPECT_EQ(background, ShownColour(button, margin));

    MoveTo(button, INSIDE);
    EXPECT_EQ(Name(*wxWHITE), ShownColour(button, wxPoint(0, 12)));
    EXPECT_EQ(Name(wxColour(128, 128, 128)), ShownColour(button, wxPoint(23, 12)));
    MoveTo(*m_panel, OUTSIDE);
    EXPECT_EQ(background, ShownColour(button, wxPoint(0, 12)));

    button.Disable();
    Pump();
    EXPECT_EQ(Name(button.GetBackgroundColour()), ShownColour(button, wxPoint(2, 2)));
    EXPECT_EQ(Name(RED), ShownColour(button, wxPoint(3, 2)));
    button.SetBitmapLabel(Plain(BLUE)); // the picture made of the old one goes
    Pump();
    EXPECT_EQ(Name(BLUE), ShownColour(button, wxPoint(3, 2)));
    button.SetBitmapDisabled(Plain(RED));
    Pump();
    EXPECT_EQ(Name(RED), ShownColour(button, wxPoint(2, 2)));
    EXPECT_EQ(Name(RED), ShownColour(button, wxPoint(3, 2)));
}

TEST_F(RadioButton, TakesColoursAndFontFromItsParent)
{
    m_panel->SetBackgroundColour(BLUE);
    m_panel->SetForegroundColour(RED);
    m_panel->SetFont(m_panel->GetFont().Larger());
    lsRadioButton& button = Add(lsRB_PUSH);
    EXPECT_EQ(BLUE, button.GetBackgroundColour());
    EXPECT_EQ(RED, button.GetForegroundColour());
    EXPECT_EQ(m_panel->GetFont(), button.GetFont());
    EXPECT_EQ(Name(BLUE), ShownColour(button, wxPoint(12, 22)));
}

TEST_F(RadioButton, FocusIsSeen)
{
    lsRadioButton& button = Add(lsRB_PUSH);
    lsRadioButton& other = Add(lsRB_PUSH, wxPoint(80, 20));
    const auto looks = [&] {
        Pump();
        std::string sLooks;
        for (int i = 0; i < 24; ++i)
            sLooks += ShownColour(button, wxPoint(i, i));
        return sLooks;
    };
    other.SetFocus();
    const std::string sWithout = looks();
    button.SetFocus();
    EXPECT_NE(sWithout, looks());
    other.SetFocus();
    EXPECT_EQ(sWithout, looks());
}
