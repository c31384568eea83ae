// Files that appear whole or not at all.
#include "Util/ReplacedFile.h"

#include "tests/support/FailingCalls.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

using namespace LS::Tests;
using LS::Util::Existing;
using LS::Util::ReplacedFile;
namespace fs = std::filesystem;
using Names = std::vector<std::string>;

namespace {

/// @return the reason, or "saved"
std::string Save(const std::string& sPath, const std::string& sText, Existing existing = Existing::Replace)
{
    ReplacedFile file(sPath, existing);
    const bool bSaved = file.Write(sText.data(), sText.size()) && file.Commit();
    EXPECT_EQ(bSaved, file.Reason().empty());
    return bSaved ? "saved" : file.Reason();
}

unsigned Permissions(const std::string& sPath)
{
    return static_cast<unsigned>(fs::status(sPath).permissions());
}

} // namespace

TEST(ReplacedFile, ShowsNothingBeforeCommit)
{
    const TempFolder folder;
    WriteText(folder.File("a"), "old");
    {
        ReplacedFile file(folder.File("a")), byName(folder.File("a")), givenUp(folder.File("a"));
        EXPECT_TRUE(file.Write("new, ", 5) && file.Write("and longer", 10) && givenUp.Write("x", 1));
        EXPECT_EQ("old", ReadText(folder.File("a")));
        EXPECT_EQ(4U, folder.Names().size());
        EXPECT_EQ('.', fs::path(file.Path()).filename().native().front());
        EXPECT_TRUE(file.Commit());
        EXPECT_EQ("new, and longer", ReadText(folder.File("a")));
        EXPECT_FALSE(file.Write("x", 1) || file.Commit()) << "only once";

        WriteText(byName.Path(), "by name");
        EXPECT_TRUE(byName.Commit());
        fs::remove(givenUp.Path()); // as a writer by name does with its half file
        EXPECT_FALSE(givenUp.Commit());
        const ReplacedFile abandoned(folder.File("a"));
    }
    EXPECT_EQ("by name", ReadText(folder.File("a")));
    EXPECT_EQ(Names{"a"}, folder.Names());
}

TEST(ReplacedFile, KeepsPermissionsAndObeysTheUmask)
{
    const struct {
        std::optional<unsigned> before;
        mode_t mask;
        unsigned after, meanwhile;
    } cases[] = {
        {{}, 0022, 0644, 0644},
        {0640, 0077, 0640, 0600},
        {0200, 0022, 0200, 0600},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.after);
        const TempFolder folder;
        const std::string sPath = folder.File("a");
        if (c.before) {
            WriteText(sPath, "old");
            fs::permissions(sPath, static_cast<fs::perms>(*c.before));
        }
        const mode_t nMaskBefore = umask(c.mask);
        ReplacedFile file(sPath);
        EXPECT_EQ(c.meanwhile, Permissions(file.Path())) << "never open to more than in the end";
        EXPECT_TRUE(file.Commit());
        EXPECT_EQ(c.after, Permissions(sPath));
        umask(nMaskBefore);
    }
}

TEST(ReplacedFile, LeavesLinksAsTheyAre)
{
    const TempFolder folder;
    fs::create_directory(folder.File("sub"));
    fs::create_symlink("sub/second", folder.File("link"));
    fs::create_symlink("../real", folder.File("sub/second"));
    for (const char* szText : {"new", "newer"}) { // there is no file for the first
        EXPECT_EQ("saved", Save(folder.File("link"), szText));
        EXPECT_TRUE(fs::is_symlink(folder.File("link")) && fs::is_symlink(folder.File("sub/second")));
        EXPECT_EQ(szText, ReadText(folder.File("real")));
    }
    EXPECT_EQ((Names{"link", "real", "sub"}), folder.Names());
}

TEST(ReplacedFile, RefusesWhatIsNoFile)
{
    const TempFolder folder;
    fs::create_directory(folder.File("folder"));
    ASSERT_EQ(0, mkfifo(folder.File("pipe").c_str(), 0600));
    fs::create_symlink("pipe", folder.File("to pipe"));
    WriteText(folder.File("file"), "old");
    const Names before = folder.Names();
    const struct {
        std::string path;
        const char* reason;
    } cases[] = {
        {"", "no name given"},
        {folder.File("folder"), "Is a directory"},
        {folder.File("missing/a"), "No such file or directory"},
        {folder.File("to pipe"), "not a regular file"},
        {folder.File(std::string(256, 'n')), "File name too long"},
        {folder.File(std::string("file\0.png", 9)), "a name can't hold a null character"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.reason, Save(c.path, "new")) << c.path;
    {
        const FailingCall readOnly(SystemCall::FaccessAt, EACCES);
        EXPECT_EQ("Permission denied", Save(folder.File("file"), "new")) << "a protected file";
    }
    EXPECT_EQ(before, folder.Names());
    EXPECT_EQ("old", ReadText(folder.File("file")));
}

TEST(ReplacedFile, FailuresOfTheDiskLeaveTheOldFile)
{
    const TempFolder folder;
    WriteText(folder.File("a"), "old");
    {
        const ResourceLimit full(RLIMIT_FSIZE, 9);
        ReplacedFile file(folder.File("a"));
        EXPECT_FALSE(file.Write("ten bytes!", 10));
        EXPECT_FALSE(file.Write("x", 1)) << "the gap would go unnoticed";
        EXPECT_FALSE(file.Commit());
        EXPECT_EQ("File too large", file.Reason());
    }
    {
        const FailingCall brokenDisk(SystemCall::Fsync, EIO);
        EXPECT_EQ("Input/output error", Save(folder.File("a"), "new"));
    }
    EXPECT_EQ(Names{"a"}, folder.Names());
    EXPECT_EQ("old", ReadText(folder.File("a")));

    const FailingCall unknown(SystemCall::Fsync, EINVAL); // on a file system without synchronisation
    EXPECT_EQ("saved", Save(folder.File("a"), "new"));
}

TEST(ReplacedFile, RefusesToReplaceOnEveryFileSystem)
{
    const struct {
        const char* name;
        int renameError, linkError;
    } cases[] = {{"renames to free names", 0, 0}, {"has links", EINVAL, 0}, {"has neither", EINVAL, EPERM}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const FailingCall rename(SystemCall::RenameAt2, c.renameError), link(SystemCall::Link, c.linkError);
        const TempFolder folder;
        EXPECT_EQ("saved", Save(folder.File("a"), "first", Existing::Refuse));
        EXPECT_EQ("File exists", Save(folder.File("a"), "second", Existing::Refuse));

        fs::create_symlink("nothing", folder.File("link"));
        EXPECT_EQ("File exists", Save(folder.File("link"), "x", Existing::Refuse));
        {
            ReplacedFile late(folder.File("b"), Existing::Refuse);
            WriteText(folder.File("b"), "somebody else's");
            EXPECT_FALSE(late.Commit());
            EXPECT_EQ("File exists", late.Reason());
        }
        EXPECT_EQ((Names{"a", "b", "link"}), folder.Names());
        EXPECT_EQ("first", ReadText(folder.File("a")));
        EXPECT_EQ("somebody else's", ReadText(folder.File("b")));
    }
}
