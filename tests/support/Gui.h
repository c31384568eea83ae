// What tests with windows share: an event loop to pump, a pointer, and answers to modal windows.
#pragma once

#include <wx/image.h>
#include <wx/modalhook.h>
#include <wx/toplevel.h>
#include <wx/window.h>

#include <functional>

namespace LS::Tests {

/// Lets pending events through, for about nRounds times 5 ms.
void Pump(int nRounds = 8);

/// Shows a top-level window and waits until it is on the screen, and active where a window manager runs.
void ShowAndWait(wxTopLevelWindow& window);

/// Moves the pointer to a point of a window's client area, and lets the events through.
void MoveTo(wxWindow& window, wxPoint at);

/// A whole click of the left button there. Two clicks in one place are kept apart in time, so that they are
/// no double click.
void Click(wxWindow& window, wxPoint at);

/// Holds the left button down from its making, at a point of a window's client area, to its end.
class HeldButton {
public:
    HeldButton(wxWindow& window, wxPoint at);
    HeldButton(const HeldButton&) = delete;
    HeldButton& operator=(const HeldButton&) = delete;
    ~HeldButton();
};

/// What the screen shows of a window's client area.
wxImage Screenshot(wxWindow& window);

/// Answers every modal window while it lives, in place of showing it.
class ModalAnswer : public wxModalDialogHook {
public:
    using Answer = std::function<int(wxDialog& dialog)>; ///< gives the id that ends the dialog

    explicit ModalAnswer(Answer answer);
    ~ModalAnswer() override;
    int Count() const { return m_nCount; }

protected:
    int Enter(wxDialog* dialog) override;

private:
    Answer m_answer;
    int m_nCount = 0;
};

} // namespace LS::Tests
