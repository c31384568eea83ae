// The steps of a start up to the point where it is the first instance or over.
#include "app/SingleInstance.h"

#include "Util/FailureLog.h"
#include "app/InstanceLock.h"
#include "app/InstanceSocket.h"
#include "app/LocalSocket.h"

#include <wx/intl.h>
#include <wx/log.h>
#include <wx/msgdlg.h>

#include <optional>
#include <utility>

namespace {

std::unique_ptr<wxSingleInstanceChecker> LockInstance()
{
    const wxLogNull silent; // its messages would come up as boxes before the program is there
    auto checker = std::make_unique<wxSingleInstanceChecker>();
    if (!checker->Create(InstanceLockName()))
        LS::Util::LogFailure("locking the instance", InstanceLockName().utf8_string(), "no lock can be had");
    return checker;
}

/// The lock may be out of reach, as in a home that can't be written; the socket then still tells.
bool IsAnotherRunning(const wxSingleInstanceChecker& checker, const std::string& sSocket)
{
    return checker.IsAnotherRunning() || IsListening(sSocket);
}

InstanceCheck BecomeFirst(std::unique_ptr<wxSingleInstanceChecker> checker, SecondStartTarget& target)
{
    auto server = std::make_unique<CAppServer>(target);
    if (!server->Create(IPC_SERVICE)) {
        wxLogError("Failed to create an IPC service.");
        return {false, std::move(checker), nullptr};
    }
    return {true, std::move(checker), std::move(server)};
}

void ShowTooBusy()
{
    wxMessageBox("Sorry, the existing instance may be too busy too respond.\n"
                 "Please close any open dialogs and retry.",
                 wxGetTranslation("Tolvanic Lumistrand"), wxOK | wxICON_INFORMATION);
}

/// One look at lock and socket. @return what the first instance has, or nothing where another one runs
std::optional<InstanceCheck> TryToBeFirst(const std::string& sSocket, SecondStartTarget& target)
{
    const StartGuard guard(sSocket.empty() ? sSocket : sSocket + ".start");
    PrepareInstanceLock();
    auto checker = LockInstance();
    if (IsAnotherRunning(*checker, sSocket))
        return std::nullopt;
    return BecomeFirst(std::move(checker), target);
}

void HandOver(wxConnectionBase& connection, const wxArrayString& arguments)
{
    if (arguments.size() <= 1)
        return;
    const wxLogNull silent;
    connection.Execute(arguments.Last());
    connection.Disconnect();
}

} // namespace

InstanceCheck CheckSingleInstance(const wxArrayString& arguments, SecondStartTarget& target)
{
    const std::string sSocket = InstanceSocketPath(IPC_SERVICE);
    std::optional<InstanceCheck> first = TryToBeFirst(sSocket, target);
    if (first)
        return std::move(*first);

    CAppClient client;
    const std::unique_ptr<wxConnectionBase> connection(
        client.MakeConnection(IPC_HOST, IPC_SERVICE, IPC_TOPIC));
    if (!connection && !IsListening(sSocket)) // it has ended meanwhile, which makes room for this start
        first = TryToBeFirst(sSocket, target);
    if (first)
        return std::move(*first);

    if (connection)
        HandOver(*connection, arguments);
    else
        ShowTooBusy();
    return {};
}
