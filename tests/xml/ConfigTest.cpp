// The settings: versions, values, and when the file is written.
#include "xml/Config.h"

#include "tests/support/FailingCalls.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <sys/stat.h>
#include <wx/init.h>
#include <wx/stdpaths.h>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

constexpr const char* NAME = "lsConfigHDR.xml";

/// The library's base, and its log in memory.
struct LibraryLog : private wxInitializer, LogRecorder {};

/// The file's text; "" where none is, without waiting for a pipe.
std::string Text(const TempFolder& folder)
{
    std::error_code noFile;
    return fs::is_regular_file(folder.File(NAME), noFile) ? ReadText(folder.File(NAME)) : "";
}

std::wstring Wide(const TempFolder& folder)
{
    return LS::Util::WidePath(folder.Path());
}

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

Settings Defaults()
{
    return {"English (U.S.)",
            wxStandardPaths::Get().GetDocumentsDir().utf8_string(),
            "JPEG Image Format (*.jpeg;*.jpg)",
            LS::Util::NarrowPath(LS::Util::ProgramFolder()) + "/output/",
            "95",
            "8",
            "2"};
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
    enum class Start { Reads, Replaces, LeavesAlone };
    const struct {
        const char* name;
        std::optional<std::string> file;
        Start start;
    } cases[] = {
        {"no file", {}, Start::Replaces},
        {"this version", OtherFile("Version='6'"), Start::Reads},
        {"a later one", OtherFile("Version='6.1'"), Start::Replaces},
        {"version 5", OtherFile("Version='5'"), Start::Replaces},
        {"an older one", OtherFile("Version='5.5'"), Start::LeavesAlone},
        {"no version", OtherFile(""), Start::LeavesAlone},
        {"cut", OtherFile("Version='6'").substr(0, 60), Start::Replaces},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const FailureRecorder failures;
        const LibraryLog log;
        const TempFolder folder;
        if (c.file)
            WriteText(folder.File(NAME), *c.file);
        {
            Config config;
            EXPECT_TRUE(config.Load(Wide(folder)));
            EXPECT_EQ(c.start == Start::Replaces ? FileOf(Defaults()) : *c.file, Text(folder));
        }
        const Settings read = {"French", "/p", "t", "/f/", "1", "12", "-7"};
        EXPECT_EQ(FileOf(c.start == Start::Reads ? read : Defaults()), Text(folder));
        EXPECT_TRUE(log.Lines().empty());
    }
}

TEST(Config, MissingAndUnreadableKeysKeepTheDefaults)
{
    const LibraryLog log;
    const TempFolder folder;
    WriteText(folder.File(NAME), "<any Version='6'><Language>German</Language>"
                                 "<Save JPEGCompression='best' BitDepth='' CompressionType='0x2'/></any>");
    {
        Config config;
        EXPECT_TRUE(config.Load(Wide(folder)));
    }
    Settings expected = Defaults();
    expected[0] = "German"; // an element is as good as an attribute
    expected[6] = "0";
    EXPECT_EQ(FileOf(expected), Text(folder));
}

TEST(Config, WhatCannotBeWrittenEndsTheStart)
{
    const std::string sWrite = "Write config error!", sOverwrite = "Overwrite config error!";
    const struct {
        const char* name;
        void (*prepare)(const TempFolder& folder);
        std::string message;
    } cases[] = {
        {"pipe in its place", [](const TempFolder& f) { ASSERT_EQ(0, mkfifo(f.File(NAME).c_str(), 0600)); },
         sOverwrite},
        {"link to no folder", [](const TempFolder& f) { fs::create_symlink("none/x", f.File(NAME)); },
         sWrite},
        {"version 5 on a broken disk",
         [](const TempFolder& f) { WriteText(f.File(NAME), OtherFile("Version='5'")); }, sOverwrite},
        {"new on a broken disk", [](const TempFolder&) {}, sWrite},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const FailureRecorder failures;
        const TempFolder folder;
        c.prepare(folder);
        const std::string sBefore = Text(folder);
        const auto names = folder.Names();
        const FailingCall brokenDisk(SystemCall::Fsync, EIO);
        const LibraryLog log;
        {
            Config config;
            EXPECT_FALSE(config.Load(Wide(folder)));
            EXPECT_EQ(std::vector<std::string>{c.message}, log.Lines());
        }
        EXPECT_EQ(1U, log.Lines().size()) << "the end says nothing";
        EXPECT_EQ(names, folder.Names());
        EXPECT_EQ(sBefore, Text(folder));
    }
}

TEST(Config, FullDiskAtTheEndLeavesTheOldFile)
{
    const FailureRecorder failures;
    const LibraryLog log;
    const TempFolder folder;
    auto config = std::make_unique<Config>();
    ASSERT_TRUE(config->Load(Wide(folder)));
    const std::string sOld = Text(folder);
    config->m_language = "French";
    {
        const ResourceLimit full(RLIMIT_FSIZE, 100);
        EXPECT_FALSE(config->Overwrite());
        config.reset();
    }
    EXPECT_EQ(sOld, Text(folder));
    EXPECT_EQ(std::vector<std::string>{NAME}, folder.Names());
    EXPECT_EQ(std::vector<std::string>{"Overwrite config error!"}, log.Lines());
    EXPECT_EQ(2U, failures.Lines().size());
}

TEST(Config, OneInstanceInAFolderOneLevelDeep)
{
    const FailureRecorder failures;
    const LibraryLog log;
    const TempFolder folder;
    Config* const pConfig = Config::Instance();
    EXPECT_EQ(pConfig, Config::Instance());
    EXPECT_FALSE(pConfig->Write()) << "nobody has said where";
    EXPECT_FALSE(pConfig->Load(folder.WideFile("a/b")));
    EXPECT_EQ(std::vector<std::string>{"Write config error!"}, log.Lines());
    EXPECT_TRUE(pConfig->Load(folder.WideFile("new")));
    const wxString text = wxString::FromUTF8("/caf\xC3\xA9/\xF0\x9F\x93\xB7/<a b=\"c\">'&#x41;&%s\n/");
    pConfig->m_fullName = text;
    pConfig->m_bitDepth = -2147483647;
    fs::remove(folder.File("new/lsConfigHDR.xml")); // makes no difference
    Config::DestroyInstance();
    EXPECT_NE(text, Config::Instance()->m_fullName) << "a new one";
    EXPECT_TRUE(Config::Instance()->Load(folder.WideFile("new")));
    EXPECT_EQ(text, Config::Instance()->m_fullName);
    EXPECT_EQ(-2147483647, Config::Instance()->m_bitDepth);
    Config::DestroyInstance();
}
