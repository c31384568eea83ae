// The link from a later start of the program to the running one: one command, which carries paths.
#pragma once

#include "Util/FileDescriptor.h"
#include "app/SecondStartTarget.h"

#include <wx/ipc.h>

#include <chrono>
#include <memory>
#include <optional>

class IpcListener;

constexpr const char* IPC_SERVICE = "LumiStrandHDR";
constexpr const char* IPC_TOPIC = "only-one";
constexpr const char* IPC_HOST = "localhost";

// These are IPC classes of wxWidgets and speak their bytes, with a transport of our own below: that of the
// library allocates whatever length a message announces, waits up to ten minutes for bytes that don't come,
// and blocks the client for as long as the other side doesn't answer.

/// Accepts later starts in the running program.
class CAppServer : public wxServer {
public:
    /// @param target  stays the caller's and lives longer
    explicit CAppServer(SecondStartTarget& target);
    CAppServer(const CAppServer&) = delete;
    CAppServer& operator=(const CAppServer&) = delete;
    ~CAppServer() override;

    /// Listens at the socket of a service, as InstanceSocketPath tells it; the event loop does the rest.
    /// @return false, with the reason in the log, if that can't be
    bool Create(const wxString& service) override;

    /// A new connection, or null to refuse: another topic, whatever its case, or a busy program.
    wxConnectionBase* OnAcceptConnection(const wxString& topic) override;

    SecondStartTarget& Target() const { return m_target; }

private:
    SecondStartTarget& m_target;
    std::unique_ptr<IpcListener> m_listener;
};

/// Reaches the running program from a later start.
class CAppClient : public wxClient {
public:
    /// @param wait  how long the running program may take to answer
    explicit CAppClient(std::chrono::milliseconds wait = std::chrono::seconds(5)) : m_wait(wait) {}

    /// A connection, which is the caller's, or null: nobody there, refused, no answer in time.
    /// @param host  plays no part: a service is always one of this machine and user
    wxConnectionBase* MakeConnection(const wxString& host, const wxString& service,
                                     const wxString& topic) override;

    wxConnectionBase* OnMakeConnection() override;

private:
    std::chrono::milliseconds m_wait;
};

/// One conversation, on either side.
class CAppConnection : public wxConnection {
public:
    CAppConnection(); ///< a later start's side

    /// The running program's side. @param server  lives longer
    explicit CAppConnection(const CAppServer& server);
    CAppConnection(const CAppConnection&) = delete;
    CAppConnection& operator=(const CAppConnection&) = delete;
    ~CAppConnection() override;

    /// Takes the socket of an accepted connection. @param wait  for each command to be sent
    void Attach(LS::Util::FileDescriptor socket, std::chrono::milliseconds wait);

    /// Brings the program's frame to the front and hands the paths of the file argument in the data to the
    /// program. Does nothing while that is busy, and for data that is no text. @return true
    bool OnExecute(const wxString& topic, const void* data, size_t size, wxIPCFormat format) override;

    bool Disconnect() override;

protected:
    bool DoExecute(const void* data, size_t size, wxIPCFormat format) override;

private:
    const CAppServer* m_server = nullptr; // null on a later start's side
    LS::Util::FileDescriptor m_socket;
    std::chrono::milliseconds m_wait{0};
};

/// The text that data of a text format stands for, with or without a NUL at its end; no text where the format
/// is another, or the size no multiple of its unit.
std::optional<wxString> TextOfIpcData(const void* data, size_t size, wxIPCFormat format);
