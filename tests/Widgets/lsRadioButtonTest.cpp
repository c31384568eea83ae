// The image button under a real pointer and real keys.
#include "Widgets/lsRadioButton.h"

#include "tests/Widgets/WidgetTest.h"
#include "tests/support/Pixels.h"

#include <wx/dialog.h>

#include <functional>
#include <map>
#include <string>

using namespace LS::Tests;
using namespace LS::Widgets;

namespace {

const wxPoint INSIDE(12, 12);

class RadioButton : public WidgetTest {
protected:
    RadioButton()
    {
        m_frame->Bind(lsEVT_RADIOBUTTON_CLICKED, [this](wxCommandEvent&) { ++m_nClicked; });
    }

    /// A button as those beside the list of photographs.
    lsRadioButton& Add(wxPoint at = wxPoint(20, 20))
    {
        wxImage picture(20, 20);
        picture.SetRGB(wxRect(0, 0, 20, 20), 250, 0, 0);
        auto* const button =
            new lsRadioButton(m_panel, 4711, wxBitmap(picture), at, wxDefaultSize, lsRB_PUSH, "Tip");
        button->SetFocus();
        Pump();
        return *button;
    }

    void ShowDialog()
    {
        wxDialog dialog(m_frame, wxID_ANY, "In between");
        dialog.CallAfter([&] { dialog.EndModal(wxID_OK); });
        dialog.ShowModal();
    }

    /// A double click as the toolkit reports it: of real ones a slow machine makes two clicks.
    static void DoubleClick(lsRadioButton& button)
    {
        for (const auto type : {wxEVT_LEFT_DOWN, wxEVT_LEFT_UP, wxEVT_LEFT_DCLICK, wxEVT_LEFT_UP}) {
            wxMouseEvent event(type);
            button.ProcessWindowEvent(event);
        }
    }

    /// Plays a script on a button, one letter a step.
    void Play(const std::string& sScript, lsRadioButton& button)
    {
        wxUIActionSimulator simulator;
        const std::map<char, std::function<void()>> steps = {
            {'i', [&] { MoveTo(button, INSIDE); }}, {'o', [&] { MoveTo(*m_panel, ASIDE); }},
            {'p', [&] { simulator.MouseDown(); }}, // presses
            {'r', [&] { simulator.MouseUp(); }}, // releases
            {'d', [&] { DoubleClick(button); }},    {'s', [&] { simulator.Char(WXK_SPACE); }},
            {'x', [&] { simulator.Char('X'); }},    {'-', [&] { button.Disable(); }},
            {'b', [&] { ShowDialog(); }}, // a dialog box
        };
        for (const char cStep : sScript) {
            steps.at(cStep)();
            Pump(10);
        }
    }

    int m_nClicked = 0;
};

} // namespace

TEST_F(RadioButton, CommandsOfEachInput)
{
    const struct {
        const char* szWhat;
        std::string sScript;
        int nClicked;
        bool bPressed = false;
    } cases[] = {
        {"held", "ip", 0, true},
        {"click", "ipr", 1},
        {"released outside", "ipor", 1},
        {"double click", "d", 1},
        {"disabled", "-ipr", 0},
        {"disabled in between", "ip-r", 0},
        {"a dialog in between", "ipbr", 0},
        {"keys", "sx", 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szWhat);
        m_nClicked = 0;
        lsRadioButton& button = Add();
        Play(c.sScript, button);
        EXPECT_EQ(c.nClicked, m_nClicked);
        EXPECT_EQ(c.bPressed, button.GetValue());
        Play("ro", button);
        button.Destroy();
    }
}

TEST_F(RadioButton, AKeyThatIsHeldCountsOnce)
{
    wxKeyEvent key(wxEVT_KEY_DOWN);
    key.m_keyCode = WXK_SPACE;
    lsRadioButton& button = Add();
    for (int i = 0; i < 3; ++i)
        button.ProcessWindowEvent(key);
    EXPECT_EQ(1, m_nClicked);
}

TEST_F(RadioButton, EachStateLooksDifferent)
{
    lsRadioButton& button = Add();
    lsRadioButton& other = Add(wxPoint(80, 20));
    const auto looks = [&button] {
        Pump();
        return Screenshot(button);
    };
    const wxImage plain = looks();
    const std::function<void(bool)> states[] = {
        [&](bool bOn) { button.SetValue(bOn); },
        [&](bool bOn) { bOn ? MoveTo(button, INSIDE) : MoveTo(*m_panel, ASIDE); },
        [&](bool bOn) { button.Enable(!bOn); },
        [&](bool bOn) { (bOn ? button : other).SetFocus(); },
    };
    for (const auto& set : states) {
        SCOPED_TRACE(&set - states);
        set(true);
        EXPECT_FALSE(SamePixels(plain, looks()));
        set(false);
        EXPECT_TRUE(SamePixels(plain, looks()));
    }
}
