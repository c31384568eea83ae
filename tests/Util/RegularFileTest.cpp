// Files that are read at any place, and that may be cut meanwhile.
#include "Util/RegularFile.h"

#include "tests/support/FailureRecorder.h"
#include "tests/support/TempFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

using namespace LS::Tests;
using LS::Util::RegularFile;

namespace {

std::string Piece(const RegularFile& file, std::size_t nOffset, std::size_t nBytes)
{
    std::string sPiece(nBytes, '?');
    return file.Read(nOffset, sPiece.data(), nBytes) ? sPiece : "none";
}

} // namespace

TEST(RegularFile, GivesAnyPieceUntilItIsCut)
{
    const TempFolder folder;
    WriteText(folder.File("a"), "0123456789");
    const FailureRecorder log;
    const RegularFile file("test", folder.File("a"), O_RDONLY);
    ASSERT_TRUE(file.Holds(10));
    EXPECT_EQ("0123456789", Piece(file, 0, 10));
    EXPECT_EQ("78", Piece(file, 7, 2));
    EXPECT_EQ("", Piece(file, 10, 0));
    EXPECT_TRUE(log.Lines().empty());

    std::filesystem::resize_file(folder.File("a"), 8);
    EXPECT_EQ("67", Piece(file, 6, 2));
    EXPECT_EQ("none", Piece(file, 7, 2));
    EXPECT_EQ((std::vector<std::string>{"test: " + folder.File("a") + ": the file is too short"}),
              log.Lines());
}

TEST(RegularFile, RefusesWithAReason)
{
    const TempFolder folder;
    WriteText(folder.File("short"), "123");
    WriteText(folder.File("empty"), "");
    const struct {
        const char* name;
        std::size_t size;
        const char* reason;
    } cases[] = {
        {"short", 4, "the file is too short"},
        {"empty", 1, "the file is too short"},
        {"missing", 1, "No such file or directory"},
        {".", 1, "not a regular file"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const FailureRecorder log;
        EXPECT_FALSE(RegularFile("test", folder.File(c.name), O_RDONLY).Holds(c.size));
        EXPECT_EQ((std::vector<std::string>{"test: " + folder.File(c.name) + ": " + c.reason}), log.Lines());
    }
}
