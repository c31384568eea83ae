// Signals become the engine's cancel flag.
#include "cli/Cancel.h"

#include "engine/HDRWorkspace.h"

#include <csignal>

namespace {

volatile std::sig_atomic_t g_bRequested = 0;

void OnSignal(int)
{
    g_bRequested = 1;
    RequestCancel(); // stores one byte, which is safe in a handler
}

} // namespace

void CatchCancelSignals()
{
    struct sigaction action = {};
    action.sa_handler = OnSignal;
    action.sa_flags = SA_RESTART; // reads and writes of files go on; the loops look at the flag
    for (const int nSignal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(nSignal, &action, nullptr);
}

bool CancelRequested()
{
    return g_bRequested != 0;
}
