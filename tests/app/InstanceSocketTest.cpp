// Where the socket lies.
#include "app/InstanceSocket.h"

#include "tests/support/FailureRecorder.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

/// A folder with a home and a runtime folder, of which the home is ours.
struct Home : TempFolder {
    Home()
    {
        Run("mkdir -m 700 home runtime");
        setenv("HOME", File("home").c_str(), 1);
    }

    void Run(const std::string& sCommand) const
    {
        // NOLINTNEXTLINE(bugprone-command-processor): our own words
        ASSERT_EQ(0, std::system(("cd " + Path() + " && (" + sCommand + ")").c_str()));
    }

    /// The path of the socket with such a runtime folder.
    std::string SocketPath(const std::string& sRuntime) const
    {
        setenv("XDG_RUNTIME_DIR", sRuntime.empty() ? "" : File(sRuntime).c_str(), 1);
        return InstanceSocketPath("Service");
    }
};

} // namespace

TEST(InstanceSocket, LiesInAFolderThatIsOurs)
{
    const std::string sInHome = "home/.lumistrand-hdr/Service.socket";
    const struct {
        const char* szName;
        std::string sRuntime, sCommand, sPlace;
    } cases[] = {
        {"as usual", "runtime", "true", "runtime/Service.socket"},
        {"no runtime folder", "", "true", sInHome},
        {"one that others can enter", "runtime", "chmod 711 runtime", sInHome},
        {"a link to a private one", "link", "ln -s runtime link", sInHome},
        {"somebody else's, which only root can make", "runtime",
         "chown 65534 runtime 2>/dev/null || chmod 711 runtime", sInHome},
        {"others can enter that in the home as well", "", "mkdir -m 755 home/.lumistrand-hdr", ""},
        {"a link in the home", "", "ln -s ../runtime home/.lumistrand-hdr", ""},
        {"no home either", "", "rmdir home", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        const Home home;
        const FailureRecorder log;
        home.Run(c.sCommand);
        EXPECT_EQ(c.sPlace.empty() ? "" : home.File(c.sPlace), home.SocketPath(c.sRuntime));
        EXPECT_EQ(c.sPlace.empty(), !log.Lines().empty());
    }
}

TEST(InstanceSocket, LongPathBecomesAHash)
{
    const Home home;
    const auto pathOfLength = [&home](std::size_t nLength) {
        const std::string sFolder(nLength - home.Path().size() - 1 - 15, 'l'); // "/Service.socket"
        home.Run("mkdir -p -m 700 " + sFolder);
        return home.SocketPath(sFolder);
    };
    EXPECT_TRUE(pathOfLength(107).starts_with(home.Path()));
    const std::string sHashed = pathOfLength(108), sOther = pathOfLength(120);
    EXPECT_EQ(sHashed, pathOfLength(108));
    EXPECT_NE(sHashed, sOther);
    for (const std::string& sPath : {sHashed, sOther}) {
        EXPECT_LE(sPath.size(), 107U);
        EXPECT_TRUE(sPath.starts_with("/tmp/lumistrand-hdr-")) << sPath;
        const fs::path folder = fs::path(sPath).parent_path();
        EXPECT_EQ(fs::perms::owner_all, fs::status(folder).permissions());
        fs::remove(folder);
    }
}
