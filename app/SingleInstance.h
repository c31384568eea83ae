// One program per user: a start finds out whether another one runs, and hands its files to that one.
#pragma once

#include "app/AppIpc.h"

#include <wx/arrstr.h>
#include <wx/snglinst.h>

#include <memory>

/// What a start learns. Checker and server belong to the program from here on, until its exit.
struct InstanceCheck {
    bool bContinue = false; ///< whether this start is the first instance and goes on; else it ends at once
    std::unique_ptr<wxSingleInstanceChecker> checker;
    std::unique_ptr<CAppServer> server; ///< set if bContinue
};

/// The first step of a start. A later start hands over its last argument, if it has any, and tells the user
/// by a message box if the first instance is too busy to take it. Never waits longer than some seconds for
/// another process.
/// @param arguments  the command line, the program's name first
/// @param target     what later starts reach; lives longer than the server
InstanceCheck CheckSingleInstance(const wxArrayString& arguments, SecondStartTarget& target);
