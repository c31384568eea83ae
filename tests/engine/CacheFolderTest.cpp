// The folder of temporary files: names, redirection, emptying.
#include "engine/CacheFolder.h"

#include "Util/Paths.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>

using namespace LS::Tests;

TEST(CacheFolder, DeletesWhatEndsInTmp)
{
    const TempFolder folder;
    for (const char* szName : {"a.JPG.tmp", ".tmp", "b.tmp.jpg", "tmp", "c.TMP"})
        WriteText(folder.File(szName), "x");
    std::filesystem::create_directory(folder.File("folder.tmp"));
    std::filesystem::create_symlink(folder.File("b.tmp.jpg"), folder.File("link.tmp"));

    const std::wstring sFolder = folder.WideFile("");
    EXPECT_TRUE(DeleteCacheFiles(sFolder));
    EXPECT_EQ((std::vector<std::string>{"b.tmp.jpg", "c.TMP", "folder.tmp", "tmp"}), folder.Names());
    EXPECT_FALSE(DeleteCacheFiles(sFolder));
}

TEST(CacheFolder, EmptyingTakesEveryFile)
{
    ASSERT_TRUE(CreateCacheFolder());
    const std::string sFolder = LS::Util::NarrowPath(CacheFolder());
    for (const char* szName : {"a.JPG.tmp", "no ending", ".hidden", "b.txt"})
        WriteText(sFolder + szName, "x");
    std::filesystem::create_directory(sFolder + "folder");
    EmptyCacheFolder();
    EXPECT_TRUE(std::filesystem::exists(sFolder + "folder"));
    std::filesystem::remove(sFolder + "folder");
    EXPECT_TRUE(std::filesystem::is_empty(sFolder));
}

TEST(CacheFolder, NamesTheFloatFileByDateAndUptime)
{
    const std::string sName = std::filesystem::path(NewFloatCachePath()).filename();
    int nYear = 0, nMonth = 0, nDay = 0;
    unsigned long long nMilliseconds = 0;
    EXPECT_EQ(4, std::sscanf(sName.c_str(), "%d-%d-%d-%llu.tmp", &nYear, &nMonth, &nDay, &nMilliseconds));
    EXPECT_LT(0U, nMilliseconds) << "since the machine started";
}

TEST(CacheFolder, IsForItsOwnerAlone)
{
    const std::string sFolder = LS::Util::NarrowPath(CacheFolder());
    const std::string sPath = sFolder.substr(0, sFolder.size() - 1);
    const auto permissions = [&sPath] {
        return static_cast<unsigned>(std::filesystem::status(sPath).permissions());
    };
    std::filesystem::remove_all(sPath);
    EXPECT_TRUE(CreateCacheFolder());
    EXPECT_EQ(0700U, permissions());
    std::filesystem::permissions(sPath, std::filesystem::perms(0755)); // as an earlier version left it
    EXPECT_TRUE(CreateCacheFolder());
    EXPECT_EQ(0700U, permissions());

    std::filesystem::remove_all(sPath);
    WriteText(sPath, "in the way");
    EXPECT_FALSE(CreateCacheFolder());
    std::filesystem::remove(sPath);
}
