// Mappings that can't fault: the size is tested first.
#include "Util/MappedFile.h"

#include "tests/support/FailureRecorder.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>

using namespace LS::Tests;
using LS::Util::MappedFile;

TEST(MappedFile, ShowsWhatWasAskedFor)
{
    const TempFolder folder;
    WriteText(folder.File("a"), "0123456789");
    const MappedFile file("test", folder.File("a"), 10);
    ASSERT_TRUE(file.IsOpen());
    EXPECT_EQ("0123456789", std::string(file.Data().begin(), file.Data().end()));
    EXPECT_EQ(4U, MappedFile("test", folder.File("a"), 4).Data().size());
}

TEST(MappedFile, RefusesWithAReason)
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
        {"empty", 0, "Invalid argument"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const FailureRecorder log;
        const MappedFile file("test", folder.File(c.name), c.size);
        EXPECT_FALSE(file.IsOpen());
        EXPECT_TRUE(file.Data().empty());
        ASSERT_EQ(1U, log.Lines().size());
        EXPECT_EQ("test: " + folder.File(c.name) + ": " + c.reason, log.Lines()[0]);
    }
}
