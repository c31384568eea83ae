// The steps of a start up to the point where it is the first instance or over.
#include "app/SingleInstance.h"

#include "app/InstanceLock.h"
#include "app/InstanceSocket.h"
#include "app/LocalSocket.h"

#include <wx/intl.h>
#include <wx/log.h>
#include <wx/msgdlg.h>

#include <optional>
#include <utility>

namespace {

InstanceCheck BecomeFirst(std::unique_ptr<InstanceLock> lock, SecondStartTarget& target)
{
    auto server = std::make_unique<CAppServer>(target);
    if (!server->Create(IPC_SERVICE)) {
        wxLogError("Failed to create an IPC service.");
        return {};
    }
    return {StartOutcome::First, std::move(lock), std::move(server)};
}

void ShowTooBusy()
{
    wxMessageBox("Sorry, the existing instance may be too busy too respond.\n"
                 "Please close any open dialogs and retry.",
                 wxGetTranslation("Tolvanic Lumistrand"), wxOK | wxICON_INFORMATION | wxSTAY_ON_TOP);
}

/// One look at lock and socket. @return what the first instance has, or nothing where another one runs
std::optional<InstanceCheck> TryToBeFirst(const std::string& sSocket, SecondStartTarget& target)
{
    const StartGuard guard(sSocket.empty() ? sSocket : sSocket + ".start");
    auto lock = std::make_unique<InstanceLock>();
    if (lock->IsAnotherRunning() || IsListening(sSocket)) // the lock may be out of reach
        return std::nullopt;
    return BecomeFirst(std::move(lock), target);
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

    if (connection) {
        HandOver(*connection, arguments);
        return {StartOutcome::HandedOver, nullptr, nullptr};
    }
    ShowTooBusy();
    return {};
}
