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

namespace {

constexpr int ROUND_MS = 5;

/// Long enough for the next click to be one of its own.
void WaitForNextClick()
{
    wxMilliSleep(static_cast<unsigned long>(wxSystemSettings::GetMetric(wxSYS_DCLICK_MSEC)) + 10);
}

} // namespace

void Pump(int nRounds)
{
    while (nRounds-- > 0) {
        wxYield();
        wxMilliSleep(ROUND_MS);
    }
}

bool HasWindowManager()
{
    return std::getenv("LS_TEST_WINDOW_MANAGER") != nullptr;
}

void ShowAndWait(wxTopLevelWindow& window)
{
    window.Show();
    window.Raise();
    for (int i = 0; HasWindowManager() && !window.IsActive() && i < 400; ++i)
        Pump(1);
    Pump(HasWindowManager() ? 10
                            : 40); // mapping moves the window once more; without a manager nothing says when
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
    WaitForNextClick();
}

void Drag(wxWindow& window, wxPoint from, wxPoint to)
{
    constexpr int STEPS = 5;
    const wxPoint start = window.ClientToScreen(from); // the window itself may move
    const wxPoint way = to - from;
    wxUIActionSimulator simulator;
    simulator.MouseMove(start);
    Pump();
    simulator.MouseDown();
    Pump();
    for (int i = 1; i <= STEPS; ++i) {
        simulator.MouseMove(start + way * i / STEPS);
        Pump();
    }
    simulator.MouseUp();
    Pump();
    WaitForNextClick();
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

EventCounter::EventCounter(wxWindow& window, const wxEventTypeTag<wxCommandEvent>& type)
{
    window.Bind(type, [this](wxCommandEvent& event) {
        m_vEvents.push_back(event);
        event.Skip();
    });
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
