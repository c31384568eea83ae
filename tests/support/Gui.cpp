// Events, pointer and modal windows of tests.
#include "tests/support/Gui.h"

#include <wx/app.h>
#include <wx/dcclient.h>
#include <wx/dcmemory.h>
#include <wx/settings.h>
#include <wx/uiaction.h>
#include <wx/utils.h>

#include <cstdlib>
#include <utility>

namespace LS::Tests {

void Pump(int nRounds)
{
    while (nRounds-- > 0) {
        wxYield();
        wxMilliSleep(5);
    }
}

void ShowAndWait(wxTopLevelWindow& window)
{
    const bool bManaged = std::getenv("LS_TEST_WINDOW_MANAGER") != nullptr;
    window.Show();
    window.Raise();
    for (int i = 0; bManaged && !window.IsActive() && i < 400; ++i)
        Pump(1);
    Pump(bManaged ? 10 : 40); // mapping moves the window once more; without a manager nothing says when
}

void MoveTo(wxWindow& window, wxPoint at)
{
    wxUIActionSimulator().MouseMove(window.ClientToScreen(at));
    Pump();
}

void Click(wxWindow& window, wxPoint at)
{
    MoveTo(window, at);
    wxUIActionSimulator().MouseClick();
    Pump();
    wxMilliSleep(static_cast<unsigned long>(wxSystemSettings::GetMetric(wxSYS_DCLICK_MSEC)) + 10);
}

HeldButton::HeldButton(wxWindow& window, wxPoint at)
{
    MoveTo(window, at);
    wxUIActionSimulator().MouseDown();
    Pump();
}

HeldButton::~HeldButton()
{
    wxUIActionSimulator().MouseUp();
    Pump();
}

wxImage Screenshot(wxWindow& window)
{
    const wxSize size = window.GetClientSize();
    wxBitmap bitmap(size, 24);
    wxMemoryDC memory(bitmap);
    wxClientDC source(&window); // a screen DC would give an old picture
    memory.Blit(wxPoint(), size, &source, wxPoint());
    memory.SelectObject(wxNullBitmap);
    return bitmap.ConvertToImage();
}

ModalAnswer::ModalAnswer(Answer answer) : m_answer(std::move(answer))
{
    Register();
}

ModalAnswer::~ModalAnswer()
{
    Unregister();
}

int ModalAnswer::Enter(wxDialog* dialog)
{
    ++m_nCount;
    return m_answer(*dialog);
}

} // namespace LS::Tests
