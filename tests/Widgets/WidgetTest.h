// What the tests of this folder share: a frame to put controls on, and a hand on dialogs.
#pragma once

#include "tests/support/Gui.h"

#include <gtest/gtest.h>
#include <wx/dialog.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/uiaction.h>

namespace LS::Tests {

const wxPoint ASIDE(500, 400); ///< where no control lies

/// A frame on the screen, with the pointer aside.
class WidgetTest : public testing::Test {
protected:
    WidgetTest()
    {
        ShowAndWait(*m_frame);
        MoveTo(*m_panel, ASIDE);
    }
    ~WidgetTest() override
    {
        wxUIActionSimulator().MouseUp();
        m_frame->Destroy();
        Pump();
    }

    wxFrame* m_frame = new wxFrame(nullptr, wxID_ANY, "Widgets", wxPoint(50, 50), wxSize(640, 480));
    wxPanel* m_panel = new wxPanel(m_frame);
};

inline wxPoint MiddleOf(const wxWindow& window)
{
    return {window.GetSize().x / 2, window.GetSize().y / 2};
}

/// What a key of the keyboard does where the focus is.
inline void TypeKey(int nKey)
{
    wxUIActionSimulator().Char(nKey);
    Pump(10);
}

/// Waits for what a key does to a modal dialog (the toolkit shows a default button pressed for a while), and
/// ends it in any case.
inline void WaitUntilEnded(wxDialog& dialog)
{
    for (int i = 0; dialog.IsModal() && i < 400; ++i)
        Pump(1);
    if (dialog.IsModal())
        dialog.EndModal(wxID_NONE);
}

/// The command of a button, without a pointer.
inline void Press(wxWindow& dialog, int nButton)
{
    wxCommandEvent event(wxEVT_BUTTON, nButton);
    event.SetEventObject(dialog.FindWindow(nButton));
    dialog.FindWindow(nButton)->ProcessWindowEvent(event);
}

} // namespace LS::Tests
