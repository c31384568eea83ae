// The folder of temporary files: names, redirection, emptying.
#include "engine/CacheFolder.h"

#include "Util/Paths.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
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

TEST(CacheFolder, RefusesNoFolder)
{
    const TempFolder folder;
    WriteText(folder.File("mine.tmp"), "x");
    const std::filesystem::path previous = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path());
    EXPECT_FALSE(DeleteCacheFiles(L""));
    std::filesystem::current_path(previous);
    EXPECT_EQ(std::vector<std::string>{"mine.tmp"}, folder.Names());
    EXPECT_FALSE(DeleteCacheFiles(folder.WideFile("missing/")));
}

TEST(CacheFolder, NamesTheFloatFileByDateAndUptime)
{
    const std::string sName = LS::Util::NarrowPath(NewFloatCachePath());
    const std::string sFolder = LS::Util::NarrowPath(CacheFolder());
    ASSERT_TRUE(sName.starts_with(sFolder));
    int nYear = 0, nMonth = 0, nDay = 0, nEnd = 0;
    unsigned long long nTicks = 0;
    const std::string sRest = sName.substr(sFolder.size());
    ASSERT_EQ(4, std::sscanf(sRest.c_str(), "%d-%d-%d-%llu.tmp%n", &nYear, &nMonth, &nDay, &nTicks, &nEnd));
    EXPECT_EQ(sRest.size(), static_cast<std::size_t>(nEnd));
    EXPECT_EQ(std::string::npos, sRest.find("-0")) << "no leading zeros";
    const std::time_t nNow = std::time(nullptr);
    EXPECT_EQ(std::gmtime(&nNow)->tm_year + 1900, nYear);
}

TEST(CacheFolder, IsCreatedOnce)
{
    EXPECT_TRUE(CreateCacheFolder());
    EXPECT_TRUE(CreateCacheFolder());
    EXPECT_TRUE(std::filesystem::is_directory(CacheFolder()));
}

TEST(CacheFolder, AFileInItsPlaceIsAFailure)
{
    const std::string sFolder = LS::Util::NarrowPath(CacheFolder());
    const std::string sPath = sFolder.substr(0, sFolder.size() - 1);
    std::filesystem::remove_all(sPath);
    WriteText(sPath, "in the way");
    EXPECT_FALSE(CreateCacheFolder());
    std::filesystem::remove(sPath);
    EXPECT_TRUE(CreateCacheFolder());
}

TEST(CacheFolderDeathTest, IsRedirectedAtMostOnceAndBeforeItsFirstUse)
{
    CacheFolder();
    EXPECT_DEATH(RedirectCacheFolder(L"/elsewhere"), "bUsed");
}
