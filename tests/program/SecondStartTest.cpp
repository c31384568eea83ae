// Later starts of the program beside one that holds a merged image, and the sudden ends of that one.
#include "app/AppIpc.h"
#include "app/InstanceLock.h"
#include "app/IpcWire.h"
#include "app/LocalSocket.h"
#include "tests/program/WindowProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <map>

#include <sys/stat.h>
#include <unistd.h>

using namespace LS::Tests;
using LS::Util::FileDescriptor;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

class SecondStart : public testing::Test {
protected:
    void StartMerged()
    {
        ASSERT_TRUE(m_program.StartWithSeries());
        ASSERT_TRUE(m_program.Merge());
    }

    /// Names of the working files, and what stands for their contents.
    std::map<std::string, std::size_t> WorkingFiles() const
    {
        std::map<std::string, std::size_t> files;
        for (const std::string& sName : m_program.CacheFiles())
            files[sName] = std::hash<std::string>()(ReadText(m_program.File("hdrcache/" + sName)));
        return files;
    }

    /// The photographs that were added but aren't there.
    std::vector<std::string> PathsLookedFor() const
    {
        std::vector<std::string> vsPaths;
        for (const std::string& sLine : m_program.LogLines())
            if (const std::size_t nAt = sLine.find(": reading the exposure: "); nAt != std::string::npos) {
                const std::string sRest = sLine.substr(nAt + 24);
                vsPaths.push_back(sRest.substr(0, sRest.rfind(": ")));
            }
        return vsPaths;
    }

    std::string SocketPath() const { return m_program.Folder().File("runtime/LumiStrandHDR.socket"); }

    WindowProgram m_program;
};

using BusyFirst = SecondStart;
using SuddenEnd = SecondStart;

fs::perms PermissionsOf(const std::string& sPath)
{
    return fs::status(sPath).permissions();
}

} // namespace

TEST_F(SecondStart, TakesNothingFromTheFirst)
{
    fs::create_directory(m_program.File("hdrcache"));
    fs::permissions(m_program.File("hdrcache"), fs::perms(0755));
    StartMerged();
    EXPECT_EQ(fs::perms(0700), PermissionsOf(m_program.File("hdrcache")));
    for (const std::string& sName : m_program.CacheFiles())
        EXPECT_EQ(fs::perms(0600), PermissionsOf(m_program.File("hdrcache/" + sName))) << sName;

    const auto before = WorkingFiles();
    const Process other = m_program.StartOther();
    for (const char* const szArgument : {"--help", "plain"}) {
        EXPECT_TRUE(IsActive(OTHER_TITLE));
        Process second = m_program.StartAgain({szArgument});
        EXPECT_EQ(0, second.WaitForExit());
        EXPECT_EQ(szArgument == std::string("--help"),
                  second.Output().find("[url(s)...]") != std::string::npos);
        EXPECT_EQ(before, WorkingFiles());
    }
    EXPECT_TRUE(WaitUntilActive(FRAME_TITLE)) << "the first one comes to the front";
}

TEST_F(SecondStart, HandsItsLastArgumentOver)
{
    const std::string sLong = "/" + std::string(100'000, 'p'),
                      sForeign = "/no/\xc3\xa9t\xc3\xa9/\xe5\xb1\xb1.jpg";
    ASSERT_TRUE(m_program.StartToMainWindow());
    ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"ctrl+n"}));
    ASSERT_TRUE(PressKeysIn(OPEN_DIALOG, {"Escape"})) << "it showed the home, where the lock is";
    EXPECT_EQ(0, m_program.StartAgain({"/no/plain.jpg"}).WaitForExit());
    EXPECT_EQ(0, m_program.StartAgain({"x|/no/first.jpg", "|" + sForeign + "|" + sLong}).WaitForExit());
    ASSERT_TRUE(PressKeysIn(SPLASH_TITLE, {"Return"}));
    EXPECT_EQ((std::vector{sLong, sForeign}), PathsLookedFor());
}

TEST_F(BusyFirst, IsOneOfManyAtOnce)
{
    std::vector<Process> vStarts(8);
    for (Process& start : vStarts)
        start = m_program.StartAgain();
    ASSERT_TRUE(WaitForWindow(FRAME_TITLE));
    EXPECT_EQ(1, CountWindows(FRAME_TITLE));
    EXPECT_EQ(7, CountWindows(SPLASH_TITLE)) << "all others find it busy, since its splash is up";
}

TEST_F(SuddenEnd, LeavesThePlaceToALaterStart)
{
    StartMerged();
    m_program.Signal(SIGSTOP); // holds lock and socket, and is deaf
    Process next = m_program.StartAgain({"x|/no/such.jpg"});
    m_program.Kill();
    ASSERT_TRUE(WaitForWindow(SPLASH_TITLE));
    ClickWindow(SPLASH_TITLE);
    EXPECT_TRUE(WaitForWindow(FRAME_TITLE));
    EXPECT_TRUE(Becomes([this] { return m_program.CacheFiles().empty(); }))
        << "a new series empties the cache";
}

TEST_F(SecondStart, StrangeBytesHarmNobody)
{
    const std::string sConnect = EncodeIpcMessage({IpcCode::Connect, 0, IPC_TOPIC});
    const std::string sExecute = EncodeIpcMessage({IpcCode::Execute, wxIPC_UTF8TEXT, "x|/no/such.jpg"});
    ASSERT_TRUE(m_program.StartToMainWindow());
    EXPECT_EQ(fs::perms(0600), PermissionsOf(SocketPath())) << "of no use to others";
    std::vector<FileDescriptor> vOpen; // all stay open, as those of a client that hangs
    for (const std::string& sBytes :
         {std::string("GET / HTTP/1.0\r\n\r\n"), sConnect + "\x01\x11\xff\xff\xff\xff",
          sConnect + sExecute.substr(0, sExecute.size() - 1), sExecute,
          EncodeIpcMessage({IpcCode::Connect, 0, "other"}) + sExecute,
          sConnect + EncodeIpcMessage({IpcCode::Connect, 0, IPC_TOPIC}).append(sExecute)}) {
        vOpen.push_back(ConnectLocal(SocketPath(), std::chrono::steady_clock::now() + 5s));
        ASSERT_TRUE(vOpen.back().IsOpen());
        SendAll(vOpen.back().Get(), sBytes, std::chrono::steady_clock::now() + 5s);
        EXPECT_EQ(0, m_program.StartAgain().WaitForExit());
    }
    for (int n = 0; n < 150; ++n) // more silent ones than it listens to
        vOpen.push_back(ConnectLocal(SocketPath(), std::chrono::steady_clock::now() + 5s));
    EXPECT_EQ(0, m_program.StartAgain().WaitForExit());
    EXPECT_THAT(PathsLookedFor(), testing::IsEmpty());
}

TEST_F(SecondStart, WhatLiesInPlaceOfTheLockStopsNobody)
{
    const std::string sLock = m_program.Home() + "/" + InstanceLock::Name().utf8_string();
    const std::function<void()> makers[] = {
        [&] { WriteText(sLock, std::to_string(getpid())); }, // of a dead one, whose process id lives again
        [&] { WriteText(sLock, ""), fs::permissions(sLock, fs::perms::none); },
        [&] { fs::create_symlink("/nowhere", sLock); },
        [&] { mkfifo(sLock.c_str(), 0600); },
        [&] { fs::permissions(m_program.Home(), fs::perms(0500)); },
    };
    for (const auto& make : makers) {
        make();
        ASSERT_TRUE(m_program.StartToMainWindow());
        EXPECT_EQ(0, m_program.StartAgain().WaitForExit());
        m_program.Kill();
        fs::remove(sLock);
    }
}

TEST_F(SecondStart, NoPlaceForTheSocketEndsTheStart)
{
    fs::permissions(m_program.Folder().File("runtime"), fs::perms(0755));
    WriteText(m_program.Home() + "/.lumistrand-hdr", "a file where the folder should be");
    m_program.Start();
    ASSERT_TRUE(PressKeysIn("^Tolvanic Lumistrand Error$", {"Return"}));
    EXPECT_EQ(REFUSED, m_program.WaitForExit());
}

TEST_F(SecondStart, ReplacesTheSeriesAndRaisesTheWindow)
{
    StartMerged();
    Do("windowminimize", FRAME_TITLE);
    ASSERT_TRUE(WaitUntilGone(FRAME_TITLE));
    Process second = m_program.StartAgain({"x|/no/such.jpg"});
    EXPECT_EQ(0, second.WaitForExit());
    ASSERT_TRUE(WaitForWindow(SPLASH_TITLE)) << "the question whether to save";
    EXPECT_TRUE(IsOnScreen(FRAME_TITLE));
    EXPECT_TRUE(PressKeysIn(SPLASH_TITLE, {"alt+n"}));
    EXPECT_TRUE(Becomes([this] { return PathsLookedFor() == std::vector<std::string>{"/no/such.jpg"}; }));
}

TEST_F(BusyFirst, IsReportedOnTop)
{
    StartMerged();
    const auto before = WorkingFiles();
    ASSERT_TRUE(PressKeysIn(FRAME_TITLE, {"alt+h", "a"}));
    ASSERT_TRUE(WaitForWindow(SPLASH_TITLE)) << "the about window";
    for (const char* szArgument : {"x|/no/such.jpg", "plain"}) {
        Process second = m_program.StartAgain({szArgument});
        EXPECT_TRUE(Becomes([&] { return IsOnTop(second.Id(), SPLASH_TITLE); })) << "above the about window";
        EXPECT_TRUE(PressKeysIn(SPLASH_TITLE, {"Return"}));
        EXPECT_EQ(REFUSED, second.WaitForExit());
        EXPECT_EQ(before, WorkingFiles());
    }
    EXPECT_EQ(1, CountWindows(SPLASH_TITLE)) << "the about window stays";
    EXPECT_EQ("", m_program.Log());
}

TEST_F(BusyFirst, IsReportedAboveItsSplash)
{
    m_program.Start();
    ASSERT_TRUE(WaitForWindow(SPLASH_TITLE));
    Process second = m_program.StartAgain();
    EXPECT_TRUE(Becomes([&] { return IsOnTop(second.Id(), SPLASH_TITLE); }));
    ASSERT_TRUE(WaitForWindow(FRAME_TITLE));
    EXPECT_TRUE(Becomes([&] { return IsOnTop(second.Id(), SPLASH_TITLE); })) << "above the main window";
}

TEST_F(BusyFirst, LosesNothingOfItsMergeWhichASignalEndsInOrder)
{
    ASSERT_TRUE(m_program.StartWithSeries(3000, 2000));
    ASSERT_TRUE(WindowProgram::GiveMergeCommand());
    while (m_program.IsRunning() && m_program.CacheFiles().empty()) {
    }
    m_program.Signal(SIGSTOP); // half way
    const auto before = WorkingFiles();
    EXPECT_GT(4U, before.size()) << "the merge is over";
    EXPECT_EQ(0, m_program.StartAgain({"--help"}).WaitForExit());
    Process second = m_program.StartAgain();
    ASSERT_TRUE(WaitForWindow(SPLASH_TITLE)) << "no answer, so it is too busy";
    EXPECT_TRUE(PressKeysIn(SPLASH_TITLE, {"Return"}));
    EXPECT_EQ(REFUSED, second.WaitForExit());
    EXPECT_EQ(before, WorkingFiles());
    m_program.Signal(SIGTERM);
    m_program.Signal(SIGCONT);
    EXPECT_EQ(128 + SIGTERM, m_program.WaitForExit());
    m_program.ExpectNothingLeft();
    EXPECT_EQ("", m_program.Log());
}

TEST_F(SuddenEnd, SignalsEndTheFirstInOrder)
{
    const struct {
        int nSignal;
        std::vector<std::string> vsKeys; ///< what opens the window that waits for an answer
        const char* szWindow;
    } cases[] = {
        {SIGTERM, {}, FRAME_TITLE},
        {SIGHUP, {"ctrl+q"}, SPLASH_TITLE}, // the question whether to save
        {SIGINT, {"ctrl+s"}, HDR_DIALOG},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szWindow);
        StartMerged();
        PressKeysIn(FRAME_TITLE, c.vsKeys);
        ASSERT_TRUE(WaitForWindow(c.szWindow));
        fs::remove(m_program.File("lsConfigHDR.xml"));
        m_program.Signal(c.nSignal);
        EXPECT_EQ(128 + c.nSignal, m_program.WaitForExit());
        EXPECT_TRUE(fs::exists(m_program.File("lsConfigHDR.xml")));
        m_program.ExpectNothingLeft();
        EXPECT_EQ("", m_program.Log());
    }
}

TEST_F(SuddenEnd, ALostDisplayEndsTheFirstInOrder)
{
    StartMerged();
    fs::remove(m_program.File("lsConfigHDR.xml"));
    Do("windowkill", FRAME_TITLE); // cuts its connection
    EXPECT_EQ(EXIT_FAILURE, m_program.WaitForExit());
    EXPECT_TRUE(fs::exists(m_program.File("lsConfigHDR.xml")));
    m_program.ExpectNothingLeft();
}
