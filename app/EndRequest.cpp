// Signals by way of the toolkit's loop; the display's loss by way of its library.
#include "app/EndRequest.h"

#include <wx/app.h>

#include <csignal>
#include <cstdlib>

#include <unistd.h>

#include <X11/Xlib.h>

namespace {

void (*g_lostDisplay)() = nullptr;

bool IsIgnored(int nSignal)
{
    struct sigaction action {};
    return sigaction(nSignal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

int EndWithoutDisplay(Display*)
{
    g_lostDisplay();
    _exit(EXIT_FAILURE); // what runs at an ordinary exit would talk to the display
}

} // namespace

void OnEndingSignals(wxAppConsole& app, void (*end)(int nSignal))
{
    for (const int nSignal : {SIGTERM, SIGHUP, SIGINT})
        if (!IsIgnored(nSignal))
            app.SetSignalHandler(nSignal, end);
}

void OnLostDisplay(void (*end)())
{
    g_lostDisplay = end;
    XSetIOErrorHandler(EndWithoutDisplay);
}
