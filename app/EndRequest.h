// The world outside wants the program to end.
#pragma once

class wxAppConsole;

/// Calls back in the event loop, dialogs' and jobs' loops included, when a signal asks the program to end:
/// SIGTERM, SIGHUP, SIGINT. One that was ignored when the program started stays ignored, as after nohup.
void OnEndingSignals(wxAppConsole& app, void (*end)(int nSignal));

/// Calls back when the display is gone: the session is over, or its server died. Nothing may be asked of the
/// display then. The process ends when the callback returns.
void OnLostDisplay(void (*end)());
