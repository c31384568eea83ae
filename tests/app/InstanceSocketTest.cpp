// Where the socket lies.
#include "app/InstanceSocket.h"

#include "tests/app/PrivateHome.h"
#include "tests/support/FailureRecorder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

using namespace LS::Tests;

TEST(InstanceSocket, LiesInAFolderThatIsOurs)
{
    const struct {
        const char* name;
        std::function<void(const PrivateHome&)> prepare;
        const char* place; ///< below the root of both folders; null: nowhere
    } cases[] = {
        {"as usual", [](const PrivateHome&) {}, "/runtime/Service.socket"},
        {"no runtime folder", [](const PrivateHome&) { unsetenv("XDG_RUNTIME_DIR"); },
         "/home/.lumistrand-hdr/Service.socket"},
        {"a relative one", [](const PrivateHome&) { setenv("XDG_RUNTIME_DIR", ".", 1); },
         "/home/.lumistrand-hdr/Service.socket"},
        {"a missing one", [](const PrivateHome& home) { rmdir(home.Runtime().c_str()); },
         "/home/.lumistrand-hdr/Service.socket"},
        {"one that others can enter", [](const PrivateHome& home) { chmod(home.Runtime().c_str(), 0711); },
         "/home/.lumistrand-hdr/Service.socket"},
        {"a link to a private one",
         [](const PrivateHome& home) {
             std::filesystem::create_directory_symlink(home.Runtime(), home.Root() + "/link");
             setenv("XDG_RUNTIME_DIR", (home.Root() + "/link").c_str(), 1);
         },
         "/home/.lumistrand-hdr/Service.socket"},
        {"somebody else's",
         [](const PrivateHome& home) {
             if (chown(home.Runtime().c_str(), 65534, 65534) != 0) // only root can give it away
                 unsetenv("XDG_RUNTIME_DIR");
         },
         "/home/.lumistrand-hdr/Service.socket"},
        {"a folder in the home that others can enter",
         [](const PrivateHome& home) {
             unsetenv("XDG_RUNTIME_DIR");
             std::filesystem::create_directory(home.Home() + "/.lumistrand-hdr");
             chmod((home.Home() + "/.lumistrand-hdr").c_str(), 0755);
         },
         nullptr},
        {"a link in the home",
         [](const PrivateHome& home) {
             unsetenv("XDG_RUNTIME_DIR");
             std::filesystem::create_directory_symlink(home.Runtime(), home.Home() + "/.lumistrand-hdr");
         },
         nullptr},
        {"no home either",
         [](const PrivateHome& home) {
             unsetenv("XDG_RUNTIME_DIR");
             rmdir(home.Home().c_str());
         },
         nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const PrivateHome home;
        const FailureRecorder log;
        c.prepare(home);
        EXPECT_EQ(c.place ? home.Root() + c.place : std::string(), InstanceSocketPath("Service"));
        EXPECT_EQ(InstanceSocketPath("Service"), InstanceSocketPath("Service"));
        EXPECT_EQ(c.place == nullptr, !log.Lines().empty());
    }
}

TEST(InstanceSocket, LongPathBecomesAHash)
{
    const PrivateHome home;
    const auto PathOfLength = [&](std::size_t nLength) {
        const std::string sFolder =
            home.Root() + "/" + std::string(nLength - home.Root().size() - 1 - 15, 'l'); // "/Service.socket"
        std::filesystem::create_directory(sFolder);
        chmod(sFolder.c_str(), 0700);
        setenv("XDG_RUNTIME_DIR", sFolder.c_str(), 1);
        return InstanceSocketPath("Service");
    };
    EXPECT_EQ(107U, PathOfLength(107).size());
    EXPECT_TRUE(PathOfLength(107).starts_with(home.Root()));

    const std::string sHashed = PathOfLength(108), sOther = PathOfLength(120);
    for (const std::string& sPath : {sHashed, sOther}) {
        EXPECT_LE(sPath.size(), 107U);
        EXPECT_TRUE(sPath.starts_with("/tmp/lumistrand-hdr-")) << sPath;
        struct stat info;
        const std::string sFolder = std::filesystem::path(sPath).parent_path();
        ASSERT_EQ(0, stat(sFolder.c_str(), &info));
        EXPECT_EQ(0700U, info.st_mode & 07777);
        rmdir(sFolder.c_str());
    }
    EXPECT_NE(sHashed, sOther);
    EXPECT_EQ(sHashed, PathOfLength(108));
    rmdir(std::filesystem::path(sHashed).parent_path().c_str());
}
