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
    EXPECT_FALSE(bSaved && file.IsOpen());
    return bSaved ? "saved" : file.Reason();
}

/// The umask as long as it lives.
class Umask {
public:
    explicit Umask(mode_t nMask) : m_nPrevious(umask(nMask)) {}
    Umask(const Umask&) = delete;
    Umask& operator=(const Umask&) = delete;
    ~Umask() { umask(m_nPrevious); }

private:
    mode_t m_nPrevious;
};

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
        ReplacedFile file(folder.File("a"));
        ASSERT_TRUE(file.IsOpen());
        EXPECT_TRUE(file.Write("new, ", 5) && file.Write("and longer", 10));
        EXPECT_EQ("old", ReadText(folder.File("a")));
        EXPECT_EQ(2U, folder.Names().size());
        EXPECT_EQ('.', fs::path(file.Path()).filename().native().front());
        EXPECT_TRUE(file.Commit());
        EXPECT_FALSE(file.Write("x", 1));
        EXPECT_FALSE(file.Commit()) << "only once";
    }
    EXPECT_EQ("new, and longer", ReadText(folder.File("a")));
    {
        ReplacedFile file(folder.File("a"));
        EXPECT_TRUE(file.Write("given up", 8));
    }
    EXPECT_EQ("new, and longer", ReadText(folder.File("a")));
    EXPECT_EQ(Names{"a"}, folder.Names());
}

TEST(ReplacedFile, ServesWritersThatOpenByName)
{
    const TempFolder folder;
    ReplacedFile file(folder.File("a")), other(folder.File("a"));
    EXPECT_NE(file.Path(), other.Path());
    WriteText(file.Path(), "by name");
    EXPECT_TRUE(file.Commit());
    EXPECT_EQ("by name", ReadText(folder.File("a")));

    fs::remove(other.Path()); // as a writer does with its half file
    EXPECT_FALSE(other.Commit());
    EXPECT_EQ("by name", ReadText(folder.File("a")));
}

TEST(ReplacedFile, KeepsPermissionsAndObeysTheUmask)
{
    const struct {
        std::optional<unsigned> before;
        mode_t mask;
        unsigned after, meanwhile;
    } cases[] = {
        {{}, 0022, 0644, 0644},   {{}, 0077, 0600, 0600},   {{}, 0007, 0660, 0660},
        {0640, 0077, 0640, 0600}, {0777, 0022, 0777, 0755}, {0600, 0000, 0600, 0600},
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
        const Umask umask(c.mask);
        ReplacedFile file(sPath);
        EXPECT_EQ(c.meanwhile, Permissions(file.Path())) << "never open to more than in the end";
        EXPECT_TRUE(file.Commit());
        EXPECT_EQ(c.after, Permissions(sPath));
    }
}

TEST(ReplacedFile, LeavesLinksAsTheyAre)
{
    const struct {
        const char* name;
        const char* link;
        const char* secondLink; // what the first one points at, if that is a link too
        const char* file;
        bool exists;
    } cases[] = {
        {"relative", "real", nullptr, "real", true},
        {"into a folder", "sub/real", nullptr, "sub/real", true},
        {"a chain that changes folders", "sub/second", "../real", "real", true},
        {"to nothing yet", "sub/real", nullptr, "sub/real", false},
        {"a chain to nothing yet", "sub/second", "new", "sub/new", false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const TempFolder folder;
        fs::create_directory(folder.File("sub"));
        fs::create_symlink(c.link, folder.File("link"));
        if (c.secondLink)
            fs::create_symlink(c.secondLink, folder.File(c.link));
        if (c.exists)
            WriteText(folder.File(c.file), "old");
        EXPECT_EQ("saved", Save(folder.File("link"), "new"));
        EXPECT_EQ(c.link, fs::read_symlink(folder.File("link")));
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(folder.File(c.file))));
        EXPECT_EQ("new", ReadText(folder.File(c.file)));
    }
}

TEST(ReplacedFile, TakesTheLongestNameAndAnyBytes)
{
    const TempFolder folder;
    for (const std::string& sName : {std::string(255, 'n'), std::string("\xc3\xa9"), std::string("\xff\xfe")})
        EXPECT_EQ("saved", Save(folder.File(sName), "x")) << sName;
    EXPECT_EQ(3U, folder.Names().size());

    const fs::path before = fs::current_path();
    fs::current_path(folder.Path());
    EXPECT_EQ("saved", Save("relative", "x"));
    fs::current_path(before);
    EXPECT_EQ("x", ReadText(folder.File("relative")));
}

TEST(ReplacedFile, RefusesWhatIsNoFile)
{
    const TempFolder folder;
    fs::create_directory(folder.File("folder"));
    ASSERT_EQ(0, mkfifo(folder.File("pipe").c_str(), 0600));
    fs::create_symlink("loop", folder.File("loop"));
    fs::create_symlink("pipe", folder.File("to pipe"));
    fs::create_symlink("/dev/full", folder.File("to device"));
    WriteText(folder.File("file"), "old");
    const Names before = folder.Names();
    const struct {
        std::string path;
        const char* reason;
    } cases[] = {
        {"", "no name given"},
        {folder.File("folder"), "Is a directory"},
        {folder.File("folder/."), "Is a directory"},
        {folder.File("missing/"), "Is a directory"},
        {folder.File("missing/a"), "No such file or directory"},
        {folder.File("file/a"), "Not a directory"},
        {folder.File("pipe"), "not a regular file"},
        {folder.File("to pipe"), "not a regular file"},
        {folder.File("to device"), "not a regular file"},
        {"/dev/full", "not a regular file"},
        {folder.File("loop"), "Too many levels of symbolic links"},
        {folder.File(std::string(256, 'n')), "File name too long"},
        {folder.File(std::string("file\0.png", 9)), "a name can't hold a null character"},
        {"/proc/a", "No such file or directory"}, // nobody may create files there, not even root
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(c.reason, Save(c.path, "new"));
    }
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
        EXPECT_EQ("File too large", Save(folder.File("a"), "ten bytes!"));
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

    const FailingCall noSuchThing(SystemCall::Fsync, EINVAL);
    EXPECT_EQ("saved", Save(folder.File("a"), "new")) << "a file system without synchronisation";
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
            EXPECT_TRUE(late.IsOpen());
            WriteText(folder.File("b"), "somebody else's");
            EXPECT_FALSE(late.Commit());
            EXPECT_EQ("File exists", late.Reason());
        }
        EXPECT_EQ((Names{"a", "b", "link"}), folder.Names());
        EXPECT_EQ("first", ReadText(folder.File("a")));
        EXPECT_EQ("somebody else's", ReadText(folder.File("b")));
    }
}
