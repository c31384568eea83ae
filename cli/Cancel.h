// Ctrl-C, and other polite requests to stop.
#pragma once

/// From now on an interrupt, a hang-up or a termination sets the engine's cancel flag and is remembered,
/// so that the program can clean up before it ends.
void CatchCancelSignals();

/// From now on each such signal is passed on to a child process; 0 for none. A signal that came before isn't.
void PassCancelTo(int nProcess);

/// True once such a signal has come.
bool CancelRequested();
