// Signals become the engine's cancel flag.
#include "cli/Cancel.h"

#include "engine/HDRWorkspace.h"

#include <csignal>
#include <sys/types.h>

namespace {

volatile std::sig_atomic_t g_bRequested = 0;
volatile std::sig_atomic_t g_nChild = 0;

// Everything here is safe in a handler: what the engine does is to store one byte.
void OnSignal(int nSignal)
{
    g_bRequested = 1;
    RequestCancel();
    if (g_nChild > 0)
        kill(static_cast<pid_t>(g_nChild), nSignal);
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

void PassCancelTo(int nProcess)
{
    g_nChild = nProcess;
}

bool CancelRequested()
{
    return g_bRequested != 0;
}
