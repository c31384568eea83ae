// The settings: versions, values, and when the file is written.
#include "xml/Config.h"

#include "tests/support/FailingCalls.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <string>

#include <wx/init.h>
#include <wx/stdpaths.h>

using namespace LS::Tests;

namespace {

/// The library's base, and its log in memory.
struct LibraryLog : private wxInitializer, LogRecorder {};

/// The settings in the order of the file.
using Settings = std::array<std::string, 7>;

/// The file as it is written with these.
std::string FileOf(const Settings& s)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<LumiStrandBatch Version=\"6\" Author=\"Ordan\" "
           "Language=\"" +
           s[0] + "\">\n    <Settings LastImagePath=\"" + s[1] + "\" />\n    <Save ImageType=\"" + s[2] +
           "\" FullName=\"" + s[3] + "\" JPEGCompression=\"" + s[4] + "\" BitDepth=\"" + s[5] +
           "\" CompressionType=\"" + s[6] + "\" />\n</LumiStrandBatch>\n";
}

/// A file of other words, all settings of which differ from the defaults.
std::string OtherFile(const std::string& sVersion)
{
    return "<any " + sVersion +
           " Language='French'><Settings LastImagePath='/p'/><Save ImageType='t' FullName='/f/' "
           "JPEGCompression='1' BitDepth='12' CompressionType='-7'/></any>";
}

} // namespace

TEST(Config, VersionDecidesWhatBecomesOfTheFile)
{
    const LibraryLog log;
    const Settings read = {"French", "/p", "t", "/f/", "1", "12", "-7"};
    const Settings defaults = {"English (U.S.)",
                               wxStandardPaths::Get().GetDocumentsDir().utf8_string(),
                               "JPEG Image Format (*.jpeg;*.jpg)",
                               LS::Util::NarrowPath(LS::Util::ProgramFolder()) + "/output/",
                               "95",
                               "8",
                               "2"};
    Settings partly = defaults;
    partly[0] = "German"; // an element is as good as an attribute
    partly[6] = "0";
    const struct {
        const char* name;
        std::optional<std::string> file;
        bool replacedAtOnce;
        Settings atTheEnd;
    } cases[] = {
        {"no folder", {}, true, defaults},
        {"this version", OtherFile("Version='6'"), false, read},
        {"a later one", OtherFile("Version='6.1'"), true, defaults},
        {"an older one", OtherFile("Version='5.5'"), false, defaults},
        {"cut", OtherFile("Version='6'").substr(0, 60), true, defaults},
        {"keys that are missing or no numbers",
         "<any Version='6'><Language>German</Language>"
         "<Save JPEGCompression='best' BitDepth='' CompressionType='0x2'/></any>",
         false, partly},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const FailureRecorder failures;
        const TempFolder parent;
        const std::string sFile = parent.File("settings/lsConfigHDR.xml");
        if (c.file) {
            std::filesystem::create_directory(parent.File("settings"));
            WriteText(sFile, *c.file);
        }
        {
            Config config;
            EXPECT_TRUE(config.Load(parent.WideFile("settings")));
            EXPECT_EQ(c.replacedAtOnce ? FileOf(defaults) : *c.file, ReadText(sFile));
        }
        EXPECT_EQ(FileOf(c.atTheEnd), ReadText(sFile));
    }
    EXPECT_TRUE(log.Lines().empty());
}

TEST(Config, WhatCannotBeWrittenEndsTheStart)
{
    for (const std::string& sOld : {std::string(), OtherFile("Version='5'")}) {
        const FailureRecorder failures;
        const LibraryLog log;
        const TempFolder folder;
        if (!sOld.empty())
            WriteText(folder.File("lsConfigHDR.xml"), sOld);
        const FailingCall brokenDisk(SystemCall::Fsync, EIO);
        {
            Config config;
            EXPECT_FALSE(config.Load(LS::Util::WidePath(folder.Path())));
        }
        ASSERT_EQ(1U, log.Lines().size()) << "the end says nothing";
        EXPECT_EQ(sOld.empty() ? "Write config error!" : "Overwrite config error!", log.Lines()[0]);
        EXPECT_EQ(2U, failures.Lines().size()) << "one for each try";
        EXPECT_EQ(sOld, ReadText(folder.File("lsConfigHDR.xml")));
    }
}
