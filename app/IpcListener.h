// The first instance's side of the link: a listening socket and its conversations, served by the event loop.
#pragma once

#include "Util/FileDescriptor.h"

#include <wx/evtloopsrc.h>
#include <wx/ipc.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// A descriptor that the event loop watches for reading.
class WatchedDescriptor {
public:
    WatchedDescriptor(LS::Util::FileDescriptor file, wxEventLoopSourceHandler& handler);

    bool IsOpen() const { return m_source != nullptr; }
    int Get() const { return m_file.Get(); }
    void Close();

private:
    LS::Util::FileDescriptor m_file;
    std::unique_ptr<wxEventLoopSource> m_source;
};

/// Gives the connection that serves a topic, or null to refuse.
using ConnectionMaker = std::function<wxConnectionBase*(const wxString& topic)>;

/// Listens as long as it lives. No conversation can hold up another one or the program: nothing here waits,
/// and nothing is allocated because a message announces it.
class IpcListener : private wxEventLoopSourceHandler {
public:
    /// @return null, with the reason in the log, if the path can't be listened at
    static std::unique_ptr<IpcListener> Open(const std::string& sPath, ConnectionMaker maker);
    IpcListener(const IpcListener&) = delete;
    IpcListener& operator=(const IpcListener&) = delete;
    ~IpcListener() override; ///< ends all conversations and removes the socket

private:
    class Conversation;

    IpcListener(LS::Util::FileDescriptor listener, std::string sPath, ConnectionMaker maker);
    void OnReadWaiting() override;
    void OnWriteWaiting() override {}
    void OnExceptionWaiting() override {}
    void MakeRoom();

    std::string m_sPath;
    ConnectionMaker m_maker;
    WatchedDescriptor m_listener;
    std::vector<std::unique_ptr<Conversation>> m_vConversations; // the oldest first
};
