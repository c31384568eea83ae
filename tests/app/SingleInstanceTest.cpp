// Several starts at once, with real processes.
#include "app/AppIpc.h"
#include "app/InstanceLock.h"
#include "app/InstanceSocket.h"
#include "app/IpcWire.h"
#include "app/LocalSocket.h"
#include "tests/app/InstanceProcess.h"
#include "tests/app/PrivateHome.h"
#include "tests/support/Gui.h"
#include "tests/support/ResourceLimit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace LS::Tests;
using LS::Util::FileDescriptor;
using namespace std::chrono_literals;

namespace {

const std::string TOO_BUSY = "box Tolvanic Lumistrand|Sorry, the existing instance may be too busy too "
                             "respond./Please close any open dialogs and retry.|8804/over";

/// A first instance that has come so far that it can be asked.
InstanceProcess StartFirst(const std::string& sState)
{
    InstanceProcess first({sState});
    EXPECT_EQ("first", first.Line());
    if (sState != "blocked" && sState != "ending") {
        EXPECT_EQ("ready", first.Line());
    }
    return first;
}

/// What a start says to its end.
std::string StartAgain(const std::vector<std::string>& vsArguments = {})
{
    std::vector<std::string> vsAll{"idle"};
    vsAll.insert(vsAll.end(), vsArguments.begin(), vsArguments.end());
    return InstanceProcess(vsAll).Rest();
}

Deadline Soon()
{
    return std::chrono::steady_clock::now() + 5s;
}

std::string SocketPath()
{
    return InstanceSocketPath(IPC_SERVICE);
}

/// What another user gets: 0 if the connection ends without an answer.
int AnswerToStranger(const std::string& sPath)
{
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
    sockaddr_un address{AF_UNIX, {}};
    sPath.copy(address.sun_path, sizeof address.sun_path - 1);
    if (connect(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return 1;
    SendAll(socket.Get(), EncodeIpcMessage({IpcCode::Connect, 0, IPC_TOPIC}), Soon());
    char answer = 0;
    return recv(socket.Get(), &answer, 1, 0) <= 0 ? 0 : 2;
}

void WriteLock(const std::string& sLock, const std::string& sText, mode_t nMode)
{
    WriteText(sLock, sText);
    chmod(sLock.c_str(), nMode);
}

std::size_t ResidentPages(pid_t nProcess)
{
    std::ifstream file("/proc/" + std::to_string(nProcess) + "/statm");
    std::size_t nTotal = 0, nResident = 0;
    file >> nTotal >> nResident;
    return nResident;
}

class SingleInstance : public testing::Test {
protected:
    PrivateHome m_home;
};

} // namespace

TEST_F(SingleInstance, LaterStartHandsItsLastArgumentOver)
{
    const std::string sLong(130'000, 'p');
    const struct {
        const char* name;
        std::vector<std::string> arguments;
        std::string paths; ///< what the first instance says
    } cases[] = {
        {"nothing", {}, ""},
        {"plain path", {"/a.jpg"}, ""},
        {"word alone", {"add|"}, ""},
        {"two paths", {"add|/a.jpg|/b.jpg"}, "paths /a.jpg|/b.jpg"},
        {"only the last argument", {"add|/a.jpg", "|/b.jpg"}, "paths /b.jpg"},
        {"far from ASCII",
         {"x|/\xc3\xa9t\xc3\xa9/\xe5\xb1\xb1.jpg"},
         "paths /\xc3\xa9t\xc3\xa9/\xe5\xb1\xb1.jpg"},
        {"longest", {"x|/" + sLong}, "paths /" + sLong},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        InstanceProcess first = StartFirst("idle");
        EXPECT_EQ("over", StartAgain(c.arguments));
        if (!c.paths.empty()) {
            EXPECT_EQ(c.paths, first.Line());
        }
        EXPECT_EQ("over", StartAgain({"x|last"})); // what came before it would be heard before it
        EXPECT_EQ("paths last", first.Line());
    }
}

TEST_F(SingleInstance, FirstInstanceThatCannotTakeFilesKeepsThem)
{
    for (const char* szState : {"busy", "blocked"}) {
        SCOPED_TRACE(szState);
        InstanceProcess first = StartFirst(szState);
        InstanceProcess withFile({"idle", "x|/a.jpg"}), without({"idle"});
        EXPECT_EQ(TOO_BUSY, withFile.Rest());
        EXPECT_EQ(TOO_BUSY, without.Rest());
        first.Kill();
        EXPECT_EQ("", first.Rest());
    }
}

TEST_F(SingleInstance, FirstInstanceThatIsEndingMakesRoom)
{
    InstanceProcess ending = StartFirst("ending");
    InstanceProcess next = StartFirst("idle");
    EXPECT_EQ("over", StartAgain({"x|/a.jpg"}));
    EXPECT_EQ("paths /a.jpg", next.Line());
}

TEST_F(SingleInstance, FiftyStartsAtOnceLeaveOne)
{
    std::vector<InstanceProcess> vStarts;
    vStarts.reserve(50);
    for (int n = 0; n < 50; ++n)
        vStarts.emplace_back(std::vector<std::string>{"idle"});
    int nFirst = 0;
    for (InstanceProcess& start : vStarts) {
        const std::string sLine = start.Line();
        nFirst += sLine == "first";
        EXPECT_TRUE(sLine == "first" || sLine == "over" || sLine.starts_with("box")) << sLine;
    }
    EXPECT_EQ(1, nFirst);
}

TEST_F(SingleInstance, FiftyStartsReachARunningOne)
{
    InstanceProcess first = StartFirst("idle");
    std::vector<InstanceProcess> vStarts;
    std::vector<std::string> vsExpected, vsCame;
    for (int n = 100; n < 150; ++n) {
        vStarts.emplace_back(std::vector<std::string>{"idle", "x|" + std::to_string(n)});
        vsExpected.push_back("paths " + std::to_string(n));
    }
    for (InstanceProcess& start : vStarts)
        EXPECT_EQ("over", start.Rest());
    for (std::size_t n = 0; n < vStarts.size(); ++n)
        vsCame.push_back(first.Line());
    std::ranges::sort(vsCame);
    EXPECT_EQ(vsExpected, vsCame);
}

TEST_F(SingleInstance, StrangeBytesHarmNobody)
{
    const std::string sConnect = EncodeIpcMessage({IpcCode::Connect, 0, IPC_TOPIC});
    const std::string sExecute = EncodeIpcMessage({IpcCode::Execute, wxIPC_UTF8TEXT, "x|/never.jpg"});
    const struct {
        const char* name;
        std::string bytes;
    } cases[] = {
        {"nothing", ""},
        {"no message", "GET / HTTP/1.0\r\n\r\n"},
        {"topic of 4 GB", "\x0a\xff\xff\xff\xff"},
        {"data of 4 GB", sConnect + "\x01\x11\xff\xff\xff\xff"},
        {"data of 1 GB", sConnect + std::string("\x01\x11\x00\x00\x00\x40", 6) + std::string(100'000, 'x')},
        {"half a topic", sConnect.substr(0, 7)},
        {"half a command", sConnect + sExecute.substr(0, sExecute.size() - 1)},
        {"command without connection", sExecute},
        {"another topic", EncodeIpcMessage({IpcCode::Connect, 0, "other"}) + sExecute},
        {"bitmap", sConnect + EncodeIpcMessage({IpcCode::Execute, wxIPC_BITMAP, "x|/never.jpg"})},
        {"half a wide character",
         sConnect + EncodeIpcMessage({IpcCode::Execute, wxIPC_UNICODETEXT, "x|/ne"})},
        {"no UTF-8", sConnect + EncodeIpcMessage({IpcCode::Execute, wxIPC_UTF8TEXT, "x|\xff\xfe"})},
        {"connection twice", sConnect + sConnect + sExecute},
    };
    InstanceProcess first = StartFirst("idle");
    const std::size_t nBefore = ResidentPages(first.Id());
    std::vector<FileDescriptor> vOpen; // all stay open, as those of a client that hangs
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        vOpen.push_back(ConnectLocal(SocketPath(), Soon()));
        ASSERT_TRUE(vOpen.back().IsOpen());
        SendAll(vOpen.back().Get(), c.bytes, Soon()); // may end early: the other side hangs up
        EXPECT_EQ("over", StartAgain({"x|/good.jpg"}));
        EXPECT_EQ("paths /good.jpg", first.Line());
    }
    EXPECT_LT(ResidentPages(first.Id()), nBefore + 5000); // 20 MB, next to lengths of gigabytes
}

TEST_F(SingleInstance, SilentConnectionsLockNobodyOut)
{
    InstanceProcess first = [] {
        const ResourceLimit few(RLIMIT_NOFILE, 250);
        return StartFirst("idle");
    }();
    std::vector<FileDescriptor> vOpen;
    vOpen.reserve(400);
    for (int n = 0; n < 400; ++n)
        vOpen.push_back(ConnectLocal(SocketPath(), Soon()));
    EXPECT_EQ("over", StartAgain({"x|/good.jpg"}));
    EXPECT_EQ("paths /good.jpg", first.Line());
}

TEST_F(SingleInstance, TopicIsComparedInLowerCase)
{
    InstanceProcess first = StartFirst("idle");
    for (const auto& [sTopic, bAccepted] : {std::pair<const char*, bool>{"ONLY-ONE", true},
                                            {"Only-One", true},
                                            {"only-one ", false},
                                            {"only", false},
                                            {"", false}}) {
        CAppClient client;
        const std::unique_ptr<wxConnectionBase> connection(
            client.MakeConnection(IPC_HOST, IPC_SERVICE, sTopic));
        EXPECT_EQ(bAccepted, connection != nullptr) << sTopic;
    }
}

TEST_F(SingleInstance, LibrarysOwnClientIsUnderstood)
{
    class Client : public wxClient {
        wxConnectionBase* OnMakeConnection() override { return new wxConnection; }
    };
    InstanceProcess first = StartFirst("idle");
    Client client;
    const std::unique_ptr<wxConnectionBase> connection(
        client.MakeConnection(IPC_HOST, wxString::FromUTF8(SocketPath()), IPC_TOPIC));
    ASSERT_TRUE(connection);
    EXPECT_TRUE(connection->Execute(wxString::FromUTF8("x|/\xc3\xa9.jpg")));
    EXPECT_EQ("paths /\xc3\xa9.jpg", first.Line());
    EXPECT_TRUE(connection->Execute(L"x|/wide.jpg"));
    EXPECT_EQ("paths /wide.jpg", first.Line());
    EXPECT_TRUE(connection->Execute("x|/without a NUL.jpg", 20));
    EXPECT_EQ("paths /without a NUL.jpg", first.Line());
    connection->Disconnect();
}

TEST_F(SingleInstance, SocketIsOfNoUseToOthers)
{
    InstanceProcess first = StartFirst("idle");
    const std::string sPath = SocketPath();
    struct stat info;
    ASSERT_EQ(0, stat(sPath.c_str(), &info));
    EXPECT_EQ(0600U, info.st_mode & 07777);
    if (geteuid() != 0)
        return; // only root can become somebody else

    // Even where permissions let another user in, the connection ends unheard.
    for (const std::string& sOpened : {m_home.Root(), m_home.Runtime(), sPath})
        ASSERT_EQ(0, chmod(sOpened.c_str(), 0777));
    const pid_t nOther = fork();
    if (nOther == 0)
        _exit(setgid(65534) == 0 && setuid(65534) == 0 ? AnswerToStranger(sPath) : 100);
    int nStatus = 0;
    waitpid(nOther, &nStatus, 0);
    EXPECT_EQ(0, WEXITSTATUS(nStatus));
}

TEST_F(SingleInstance, CrashLeavesNothingInTheWay)
{
    const std::string sLock = m_home.Home() + "/" + InstanceLock::Name().utf8_string();
    InstanceProcess first = StartFirst("idle");
    first.Kill();
    EXPECT_EQ(0, access(sLock.c_str(), F_OK));
    EXPECT_EQ(0, access(SocketPath().c_str(), F_OK));

    InstanceProcess next = StartFirst("idle");
    EXPECT_EQ("over", StartAgain({"x|/a.jpg"}));
    EXPECT_EQ("paths /a.jpg", next.Line());
}

TEST_F(SingleInstance, StrangeLocksStopNobody)
{
    const std::string sLock = m_home.Home() + "/" + InstanceLock::Name().utf8_string();
    const struct {
        const char* name;
        std::function<void()> make;
    } cases[] = {
        {"another version's, with the process id of a living stranger",
         [&] { WriteLock(sLock, std::to_string(getpid()), 0600); }},
        {"no process id", [&] { WriteLock(sLock, "hello", 0600); }},
        {"empty", [&] { WriteLock(sLock, "", 0600); }},
        {"readable by all", [&] { WriteLock(sLock, "1", 0644); }},
        {"closed to ourselves", [&] { WriteLock(sLock, "1", 0); }},
        {"link to nothing", [&] { symlink("/nowhere", sLock.c_str()); }},
        {"folder", [&] { mkdir(sLock.c_str(), 0700); }},
        {"pipe", [&] { mkfifo(sLock.c_str(), 0600); }},
        {"no home", [&] { rmdir(m_home.Home().c_str()); }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        c.make();
        InstanceProcess first = StartFirst("idle");
        EXPECT_EQ("over", StartAgain({"x|/a.jpg"}));
        EXPECT_EQ("paths /a.jpg", first.Line());
        first.Kill();
        remove(sLock.c_str());
    }
}

TEST_F(SingleInstance, LockThatWasTouchedStaysALock)
{
    const std::string sLock = m_home.Home() + "/" + InstanceLock::Name().utf8_string();
    InstanceProcess first = StartFirst("idle");
    ASSERT_EQ(0, chmod(sLock.c_str(), 0644));
    EXPECT_EQ("over", StartAgain());
    ASSERT_EQ(0, unlink(sLock.c_str()));
    EXPECT_EQ("over", StartAgain({"x|/a.jpg"})); // the socket still tells
    EXPECT_EQ("paths /a.jpg", first.Line());
}

TEST_F(SingleInstance, NoPlaceForTheSocketEndsTheStart)
{
    ASSERT_EQ(0, chmod(m_home.Runtime().c_str(), 0755));
    WriteText(m_home.Home() + "/.lumistrand-hdr", "a file where the folder should be");
    EXPECT_EQ("over", StartAgain());
}

TEST_F(SingleInstance, OneStartAtATimeLooksAtTheLock)
{
    const std::string sGuard = SocketPath() + ".start";
    StartGuard guard(sGuard);
    ASSERT_TRUE(guard.IsHeld());
    EXPECT_FALSE(StartGuard(sGuard, 20ms).IsHeld()); // so that a start that hangs holds up nobody for ever

    InstanceProcess waiting({"idle"});
    pollfd poller{waiting.Output(), POLLIN, 0};
    EXPECT_EQ(0, poll(&poller, 1, 1000));
    guard.Release();
    EXPECT_EQ("first", waiting.Line());
}
