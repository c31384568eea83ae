// Accepts later starts and hears them out, piece by piece as their bytes come.
#include "app/IpcListener.h"

#include "app/IpcWire.h"
#include "app/LocalSocket.h"

#include <wx/evtloop.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <utility>

#include <sys/socket.h>
#include <unistd.h>

using LS::Util::FileDescriptor;

namespace {

/// Many more than ever start at once. Beyond it the oldest one goes, so that silent ones can't lock others
/// out.
constexpr std::size_t MAX_CONVERSATIONS = 128;
constexpr std::size_t READ_BYTES = 1 << 16;

} // namespace

WatchedDescriptor::WatchedDescriptor(FileDescriptor file, wxEventLoopSourceHandler& handler)
    : m_file(std::move(file)),
      m_source(m_file.IsOpen() ? wxEventLoopBase::AddSourceForFD(m_file.Get(), &handler, wxEVENT_SOURCE_INPUT)
                               : nullptr)
{
}

void WatchedDescriptor::Close()
{
    m_source.reset();
    m_file.Close();
}

/// One client, from its Connect to its end. It stays where it is after the end, since the loop may still be
/// in a call of it; the listener takes it away later.
class IpcListener::Conversation : private wxEventLoopSourceHandler {
public:
    Conversation(FileDescriptor socket, const ConnectionMaker& maker)
        : m_maker(maker), m_socket(std::move(socket), *this)
    {
    }
    ~Conversation() override { End(); }

    bool IsOver() const { return !m_socket.IsOpen(); }
    bool IsServed() const { return m_bServed; } ///< a command of it runs, perhaps in a loop of its own

    void End()
    {
        m_socket.Close();
        m_reader = IpcReader();
        if (m_connection)
            m_connection.release()->OnDisconnect(); // deletes it
    }

private:
    void OnReadWaiting() override;
    void OnWriteWaiting() override {}
    void OnExceptionWaiting() override {}

    bool TakeMessages();
    bool Serve(const IpcMessage& message);
    bool Answer(IpcCode code);

    const ConnectionMaker& m_maker;
    IpcReader m_reader;
    wxString m_topic;
    std::unique_ptr<wxConnectionBase> m_connection; // null until it is accepted
    bool m_bServed = false;
    WatchedDescriptor m_socket; // last: the loop calls from here on
};

void IpcListener::Conversation::OnReadWaiting()
{
    if (IsOver() || m_bServed)
        return;
    std::array<char, READ_BYTES> bytes;
    const ssize_t nRead = recv(m_socket.Get(), bytes.data(), bytes.size(), 0);
    if (nRead < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    if (nRead > 0) {
        m_reader.Append({bytes.data(), static_cast<std::size_t>(nRead)});
        m_bServed = true;
        const bool bGoOn = TakeMessages();
        m_bServed = false;
        if (bGoOn)
            return;
    }
    End();
}

bool IpcListener::Conversation::TakeMessages()
{
    for (;;) {
        IpcMessage message;
        const IpcReader::Result result = m_reader.Next(message);
        if (result == IpcReader::Result::Incomplete)
            return true;
        if (result == IpcReader::Result::Broken || !Serve(message))
            return false;
    }
}

/// @return whether more may follow
bool IpcListener::Conversation::Serve(const IpcMessage& message)
{
    if (message.code == IpcCode::Connect && !m_connection) {
        m_topic = wxString::FromUTF8(message.sData);
        m_connection.reset(m_maker(m_topic));
        return Answer(m_connection ? IpcCode::Connect : IpcCode::Fail) && m_connection;
    }
    if (message.code == IpcCode::Execute && m_connection) {
        m_connection->OnExecute(m_topic, message.sData.data(), message.sData.size(),
                                static_cast<wxIPCFormat>(message.nFormat));
        return true;
    }
    return false;
}

/// A byte always fits into the empty queue of a client that is worth an answer.
bool IpcListener::Conversation::Answer(IpcCode code)
{
    return SendAll(m_socket.Get(), EncodeIpcMessage({code, 0, {}}), Deadline());
}

std::unique_ptr<IpcListener> IpcListener::Open(const std::string& sPath, ConnectionMaker maker)
{
    FileDescriptor socket = ListenLocal(sPath);
    if (!socket.IsOpen())
        return nullptr;
    std::unique_ptr<IpcListener> listener(new IpcListener(std::move(socket), sPath, std::move(maker)));
    return listener->m_listener.IsOpen() ? std::move(listener) : nullptr;
}

IpcListener::IpcListener(FileDescriptor listener, std::string sPath, ConnectionMaker maker)
    : m_sPath(std::move(sPath)), m_maker(std::move(maker)), m_listener(std::move(listener), *this)
{
}

IpcListener::~IpcListener()
{
    // The file first: whoever still connects finds nobody and not a listener that never answers.
    unlink(m_sPath.c_str());
}

void IpcListener::OnReadWaiting()
{
    MakeRoom();
    if (FileDescriptor socket = AcceptLocal(m_listener.Get()); socket.IsOpen())
        m_vConversations.push_back(std::make_unique<Conversation>(std::move(socket), m_maker));
}

void IpcListener::MakeRoom()
{
    std::erase_if(m_vConversations, [](const auto& conversation) {
        return conversation->IsOver() && !conversation->IsServed();
    });
    if (m_vConversations.size() < MAX_CONVERSATIONS)
        return;
    const auto oldest = std::ranges::find_if(
        m_vConversations, [](const auto& conversation) { return !conversation->IsServed(); });
    if (oldest != m_vConversations.end())
        m_vConversations.erase(oldest);
}
