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
    for (const auto& [szName, szReason] : {std::pair{"short", "the file is too short"},
                                           {"missing", "No such file or directory"},
                                           {".", "not a regular file"}}) {
        const FailureRecorder log;
        EXPECT_FALSE(RegularFile("test", folder.File(szName), O_RDONLY).Holds(4));
        EXPECT_EQ((std::vector<std::string>{"test: " + folder.File(szName) + ": " + szReason}), log.Lines());
    }
}
