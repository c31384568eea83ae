// Ctrl-C, and other polite requests to stop.
#pragma once

/// From now on an interrupt, a hang-up or a termination sets the engine's cancel flag and is remembered,
/// so that the program can clean up before it ends.
void CatchCancelSignals();

/// True once such a signal has come.
bool CancelRequested();
