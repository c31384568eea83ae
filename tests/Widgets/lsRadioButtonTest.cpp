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
    lsRadioButton& Add(long nStyle, wxPoint at = wxPoint(20, 20))
    {
        wxImage picture(20, 20);
        picture.SetRGB(wxRect(0, 0, 20, 20), 250, 0, 0);
        auto* const button =
            new lsRadioButton(m_panel, 4711, wxBitmap(picture), at, wxDefaultSize, nStyle, "Tip");
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

    EventCounter m_clicked{*m_frame, lsEVT_RADIOBUTTON_CLICKED};
    EventCounter m_selected{*m_frame, lsEVT_RADIOBUTTON_SELECTED};
};

} // namespace

TEST_F(RadioButton, EventsOfEachInput)
{
    const struct {
        const char* szWhat;
        long nStyle;
        std::string sScript;
        int nClicked, nSelected;
        bool bValue;
    } cases[] = {
        {"held", lsRB_PUSH, "ip", 0, 0, true},
        {"click", lsRB_PUSH, "ipr", 1, 0, false},
        {"released outside", lsRB_PUSH, "ipor", 1, 0, false},
        {"double click", lsRB_PUSH, "d", 1, 0, false},
        {"disabled", lsRB_PUSH, "-ipr", 0, 0, false},
        {"disabled in between", lsRB_PUSH, "ip-r", 0, 0, false},
        {"a dialog in between", lsRB_PUSH, "ipbr", 0, 0, false},
        {"keys", lsRB_PUSH, "sx", 1, 0, false},
        {"toggle", lsRB_TOGGLE, "ipr", 1, 0, true},
        {"toggle and back", lsRB_TOGGLE, "iprs", 2, 0, false},
        {"radio", 0, "iprs", 0, 1, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szWhat);
        const int nClicked = m_clicked.Count(), nSelected = m_selected.Count();
        lsRadioButton& button = Add(c.nStyle);
        Play(c.sScript, button);
        EXPECT_EQ(nClicked + c.nClicked, m_clicked.Count());
        EXPECT_EQ(nSelected + c.nSelected, m_selected.Count());
        EXPECT_EQ(c.bValue, button.GetValue());
        Play("ro", button);
        button.Destroy();
    }
}

TEST_F(RadioButton, RepeatsForThePointerUntilItIsDisabledButNotForAKey)
{
    lsRadioButton& button = Add(lsRB_PUSH | lsRB_AUTOREPEAT);
    Play("ip", button);
    Pump(30);
    EXPECT_GE(m_clicked.Count(), 3);
    m_panel->Disable();
    Pump(10);
    EXPECT_FALSE(button.GetValue() || button.HasCapture());
    m_panel->Enable();
    const int nBefore = m_clicked.Count();
    wxKeyEvent key(wxEVT_KEY_DOWN);
    key.m_keyCode = WXK_SPACE;
    for (int i = 0; i < 3; ++i) // as of a key that is held
        button.ProcessWindowEvent(key);
    EXPECT_EQ(nBefore + 1, m_clicked.Count());
}

TEST_F(RadioButton, OneOfAGroupIsOn)
{
    lsRadioButton* const buttons[] = {&Add(lsRB_GROUP), &Add(0), &Add(lsRB_PUSH), &Add(0), &Add(lsRB_GROUP)};
    for (const int nOn : {4, 0, 1, 3})
        buttons[nOn]->SetValue(true);
    std::string sOn;
    for (const lsRadioButton* const button : buttons)
        sOn += button->GetValue() ? 'x' : '.';
    EXPECT_EQ(".x.xx", sOn) << "a push button parts groups";
}

TEST_F(RadioButton, EachStateLooksDifferent)
{
    lsRadioButton& button = Add(lsRB_TOGGLE);
    lsRadioButton& other = Add(lsRB_PUSH, wxPoint(80, 20));
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
