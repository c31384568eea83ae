// The three classes of the link, over our own socket.
#include "app/AppIpc.h"

#include "app/FileArgument.h"
#include "app/InstanceSocket.h"
#include "app/IpcListener.h"
#include "app/IpcWire.h"
#include "app/LocalSocket.h"

#include <wx/app.h>
#include <wx/frame.h>

#include <cstring>
#include <utility>
#include <vector>

using LS::Util::FileDescriptor;
using std::chrono::steady_clock;

namespace {

void BringToFront(wxFrame& frame)
{
    if (frame.IsIconized())
        frame.Restore();
    frame.SetFocus();
    frame.Raise();
    frame.Show(true);
}

} // namespace

CAppServer::CAppServer(SecondStartTarget& target) : m_target(target) {}

CAppServer::~CAppServer() = default;

bool CAppServer::Create(const wxString& service)
{
    m_listener.reset(); // it may be the one that listens there
    const std::string sPath = InstanceSocketPath(service.utf8_string());
    if (!sPath.empty())
        m_listener =
            IpcListener::Open(sPath, [this](const wxString& topic) { return OnAcceptConnection(topic); });
    return m_listener != nullptr;
}

wxConnectionBase* CAppServer::OnAcceptConnection(const wxString& topic)
{
    return topic.Lower() == IPC_TOPIC && !m_target.IsBusy() ? new CAppConnection(*this) : nullptr;
}

wxConnectionBase* CAppClient::MakeConnection(const wxString&, const wxString& service, const wxString& topic)
{
    const Deadline deadline = steady_clock::now() + m_wait;
    FileDescriptor socket = ConnectLocal(InstanceSocketPath(service.utf8_string()), deadline);
    const std::string sConnect = EncodeIpcMessage({IpcCode::Connect, 0, topic.utf8_string()});
    if (!socket.IsOpen() || !SendAll(socket.Get(), sConnect, deadline) ||
        ReceiveByte(socket.Get(), deadline) != static_cast<unsigned char>(IpcCode::Connect))
        return nullptr;

    std::unique_ptr<wxConnectionBase> connection(OnMakeConnection());
    if (auto* own = dynamic_cast<CAppConnection*>(connection.get()))
        own->Attach(std::move(socket), m_wait);
    return connection.release();
}

wxConnectionBase* CAppClient::OnMakeConnection()
{
    return new CAppConnection;
}

CAppConnection::CAppConnection()
{
    SetConnected(false); // what the base class has to close is none of ours
}

CAppConnection::CAppConnection(const CAppServer& server) : m_server(&server)
{
    SetConnected(false);
}

CAppConnection::~CAppConnection()
{
    CAppConnection::Disconnect();
}

void CAppConnection::Attach(FileDescriptor socket, std::chrono::milliseconds wait)
{
    m_socket = std::move(socket);
    m_wait = wait;
}

bool CAppConnection::OnExecute(const wxString&, const void* data, size_t size, wxIPCFormat format)
{
    auto* frame = dynamic_cast<wxFrame*>(wxTheApp->GetTopWindow());
    const std::optional<wxString> text = TextOfIpcData(data, size, format);
    if (!frame || !text || !m_server || m_server->Target().IsBusy())
        return true;
    BringToFront(*frame);
    if (const wxArrayString paths = PathsOfFileArgument(*text); !paths.empty())
        m_server->Target().AddFiles(paths);
    return true;
}

bool CAppConnection::Disconnect()
{
    if (m_socket.IsOpen())
        SendAll(m_socket.Get(), EncodeIpcMessage({IpcCode::Disconnect, 0, {}}), steady_clock::now() + m_wait);
    m_socket.Close();
    return true;
}

bool CAppConnection::DoExecute(const void* data, size_t size, wxIPCFormat format)
{
    if (!m_socket.IsOpen() || size > MAX_IPC_DATA)
        return false;
    const std::string sData(static_cast<const char*>(data), size);
    return SendAll(m_socket.Get(), EncodeIpcMessage({IpcCode::Execute, format, sData}),
                   steady_clock::now() + m_wait);
}

std::optional<wxString> TextOfIpcData(const void* data, size_t size, wxIPCFormat format)
{
    if (format == wxIPC_TEXT) // of any encoding; ours is that of file names
        format = wxIPC_UTF8TEXT;
    if (format != wxIPC_UTF8TEXT && format != wxIPC_UNICODETEXT)
        return std::nullopt;
    const std::size_t nUnit = format == wxIPC_UTF8TEXT ? 1 : sizeof(wchar_t);
    if (size % nUnit != 0 || (size > 0 && !data))
        return std::nullopt;

    // The library takes the last character for a NUL and drops it; the data may lie at any address.
    std::vector<wchar_t> vText(size / sizeof(wchar_t) + 1, L'\0');
    if (size > 0)
        std::memcpy(vText.data(), data, size);
    const auto* pBytes = reinterpret_cast<const char*>(vText.data());
    const bool bTerminated =
        size > 0 && std::string(pBytes + size - nUnit, nUnit) == std::string(nUnit, '\0');
    return wxConnection::GetTextFromData(vText.data(), bTerminated ? size : size + nUnit, format);
}
