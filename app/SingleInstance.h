// One program per user: a start finds out whether another one runs, and hands its files to that one.
#pragma once

#include "app/AppIpc.h"
#include "app/InstanceLock.h"

#include <wx/arrstr.h>

#include <memory>

enum class StartOutcome {
    First,      ///< this start is the first instance and goes on; any other one ends at once
    HandedOver, ///< the first instance has what there was to hand over
    Refused     ///< it couldn't take it, or there is no way to reach it, which the user has read
};

/// What a start learns. Lock and server belong to the program from here on, until its exit.
struct InstanceCheck {
    StartOutcome outcome = StartOutcome::Refused;
    std::unique_ptr<InstanceLock> lock; ///< these two only for the first instance
    std::unique_ptr<CAppServer> server;
};

/// The first step of a start. A later start hands over its last argument, if it has any, and shows
/// a message box if the first instance is too busy to take it. Never waits longer than some seconds for
/// another process.
/// @param arguments  the command line, the program's name first
/// @param target     what later starts reach; lives longer than the server
InstanceCheck CheckSingleInstance(const wxArrayString& arguments, SecondStartTarget& target);
