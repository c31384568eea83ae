// The settings: versions, values, and when the file is written.
#include "xml/Config.h"

#include "tests/support/FailingCalls.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/ResourceLimit.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <sys/stat.h>
#include <wx/init.h>

using namespace LS::Tests;
namespace fs = std::filesystem;

namespace {

constexpr const char* NAME = "lsConfigHDR.xml";

/// The library's base, and its log in memory.
struct LibraryLog : private wxInitializer, LogRecorder {};

std::string Text(const TempFolder& folder)
{
    const Bytes bytes = ReadBytes(folder.File(NAME));
    return {bytes.begin(), bytes.end()};
}

/// Without waiting for a pipe.
std::string TextIfFile(const TempFolder& folder)
{
    std::error_code noFile;
    return fs::is_regular_file(folder.File(NAME), noFile) ? Text(folder) : "";
}

std::wstring Wide(const TempFolder& folder)
{
    return LS::Util::WidePath(folder.Path());
}

/// A file of the given root's attributes, all settings of which differ from the defaults.
std::string File(const std::string& sVersion)
{
    return "<any " + sVersion +
           " Language='French'><Settings LastImagePath='/p'/><Save ImageType='t' FullName='/f/' "
           "JPEGCompression='1' BitDepth='12' CompressionType='-7'/></any>";
}

/// The members in the order of the file.
std::string Members(const Config& config)
{
    const auto text = [](const wxString& s) { return s.utf8_string() + "|"; };
    const auto number = [](std::int32_t n) { return std::to_string(n) + "|"; };
    return text(config.m_language) + text(config.m_lastImagePath) + text(config.m_imageType) +
           text(config.m_fullName) + number(config.m_jpegCompression) + number(config.m_bitDepth) +
           number(config.m_compressionType);
}

/// What a file with these members reads, where no value needs escaping.
std::string FileOf(const Config& config)
{
    const auto attribute = [](const std::string& sName, const std::string& sValue) {
        return " " + sName + "=\"" + sValue + "\"";
    };
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<LumiStrandBatch Version=\"6\" Author=\"Ordan\"" +
           attribute("Language", config.m_language.utf8_string()) + ">\n    <Settings" +
           attribute("LastImagePath", config.m_lastImagePath.utf8_string()) + " />\n    <Save" +
           attribute("ImageType", config.m_imageType.utf8_string()) +
           attribute("FullName", config.m_fullName.utf8_string()) +
           attribute("JPEGCompression", std::to_string(config.m_jpegCompression)) +
           attribute("BitDepth", std::to_string(config.m_bitDepth)) +
           attribute("CompressionType", std::to_string(config.m_compressionType)) +
           " />\n</LumiStrandBatch>\n";
}

} // namespace

TEST(Config, Defaults)
{
    const LibraryLog log;
    const Config config;
    EXPECT_EQ(6.0, config.m_version);
    EXPECT_EQ("English (U.S.)", config.m_language);
    EXPECT_FALSE(config.m_lastImagePath.empty());
    EXPECT_EQ("JPEG Image Format (*.jpeg;*.jpg)", config.m_imageType);
    EXPECT_EQ(LS::Util::ProgramFolder() + L"/output/", config.m_fullName.ToStdWstring());
    EXPECT_EQ(95, config.m_jpegCompression);
    EXPECT_EQ(8, config.m_bitDepth);
    EXPECT_EQ(2, config.m_compressionType);
    EXPECT_FALSE(config.m_root);
}

TEST(Config, VersionDecidesWhatBecomesOfTheFile)
{
    enum class Start { Reads, Replaces, LeavesAlone };
    const struct {
        const char* name;
        std::optional<std::string> file;
        Start start;
    } cases[] = {
        {"no file", {}, Start::Replaces},
        {"this version", File("Version='6'"), Start::Reads},
        {"this version in other words", File("Version='6.0x'"), Start::Reads},
        {"a later one", File("Version='7'"), Start::Replaces},
        {"a little later", File("Version='6.1'"), Start::Replaces},
        {"version 5", File("Version='5'"), Start::Replaces},
        {"version 4", File("Version='4'"), Start::LeavesAlone},
        {"between", File("Version='5.5'"), Start::LeavesAlone},
        {"negative", File("Version='-6'"), Start::LeavesAlone},
        {"no version", File(""), Start::LeavesAlone},
        {"letters for a version", File("Version='six'"), Start::LeavesAlone},
        {"infinite version", File("Version='inf'"), Start::LeavesAlone},
        {"no XML", "hello", Start::Replaces},
        {"empty", "", Start::Replaces},
        {"cut", File("Version='6'").substr(0, 60), Start::Replaces},
        {"2 MiB", "<a>" + std::string(2 << 20, 'x') + "</a>", Start::Replaces},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const FailureRecorder failures;
        const LibraryLog log;
        const TempFolder folder;
        if (c.file)
            WriteText(folder.File(NAME), *c.file);
        const std::string sDefaults = Members(Config());
        std::string sAtEnd;
        {
            Config config;
            EXPECT_TRUE(config.Load(Wide(folder)));
            EXPECT_EQ(6.0, config.m_version);
            EXPECT_EQ(c.start == Start::Reads ? "French|/p|t|/f/|1|12|-7|" : sDefaults, Members(config));
            EXPECT_EQ(c.start == Start::Replaces ? FileOf(config) : *c.file, Text(folder));
            sAtEnd = FileOf(config);
        }
        EXPECT_EQ(sAtEnd, Text(folder));
        EXPECT_TRUE(log.Lines().empty());
    }
}

TEST(Config, MissingAndUnreadableKeysKeepTheDefaults)
{
    const LibraryLog log;
    const std::string sDefaults = Members(Config());
    const std::string sPath = Config().m_lastImagePath.utf8_string();
    const struct {
        const char* name;
        std::string content, members; // members: "": the defaults
    } cases[] = {
        {"nothing but the version", "/>", ""},
        {"letters", "><Save JPEGCompression='best' BitDepth='' CompressionType='0x2'/></any>",
         sDefaults.substr(0, sDefaults.size() - 2) + "0|"},
        {"elements for attributes", "><Language>German</Language></any>",
         "German" + sDefaults.substr(sDefaults.find('|'))},
        {"first of two", "><Save BitDepth='8'/><Save BitDepth='16'/></any>", ""},
        {"no Save", " Language='French'><Settings LastImagePath='/p'/></any>",
         "French|/p" + sDefaults.substr(sDefaults.find('|', sDefaults.find('|') + 1))},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const TempFolder folder;
        WriteText(folder.File(NAME), "<any Version='6'" + c.content);
        Config config;
        EXPECT_TRUE(config.Load(Wide(folder)));
        EXPECT_EQ(c.members.empty() ? sDefaults : c.members, Members(config));
    }
}

TEST(Config, AnyTextSurvivesTheEndOfTheProgram)
{
    const LibraryLog log;
    const TempFolder folder;
    const wxString text =
        wxString::FromUTF8("/caf\xC3\xA9/\xE5\x86\x99/\xF0\x9F\x93\xB7/<a b=\"c\">'&#x41;&%s\n/");
    {
        Config config;
        ASSERT_TRUE(config.Load(Wide(folder)));
        config.m_lastImagePath = config.m_fullName = text;
        config.m_bitDepth = -2147483647;
        fs::remove(folder.File(NAME)); // makes no difference
    }
    Config config;
    EXPECT_TRUE(config.Load(Wide(folder)));
    EXPECT_EQ(text, config.m_lastImagePath);
    EXPECT_EQ(text, config.m_fullName);
    EXPECT_EQ(-2147483647, config.m_bitDepth);
}

TEST(Config, WhatCannotBeWrittenEndsTheStart)
{
    const std::string sWrite = "Write config error!", sOverwrite = "Overwrite config error!";
    const struct {
        const char* name;
        void (*prepare)(const TempFolder& folder);
        std::string message;
    } cases[] = {
        {"folder in its place", [](const TempFolder& f) { fs::create_directory(f.File(NAME)); }, sOverwrite},
        {"pipe in its place", [](const TempFolder& f) { ASSERT_EQ(0, mkfifo(f.File(NAME).c_str(), 0600)); },
         sOverwrite},
        {"ring of links", [](const TempFolder& f) { fs::create_symlink(NAME, f.File(NAME)); }, sOverwrite},
        {"link to no folder", [](const TempFolder& f) { fs::create_symlink("none/x", f.File(NAME)); },
         sWrite},
        {"broken and on a broken disk", [](const TempFolder& f) { WriteText(f.File(NAME), "x"); },
         sOverwrite},
        {"later and on a broken disk",
         [](const TempFolder& f) { WriteText(f.File(NAME), File("Version='7'")); }, sOverwrite},
        {"version 5 on a broken disk",
         [](const TempFolder& f) { WriteText(f.File(NAME), File("Version='5'")); }, sOverwrite},
        {"new on a broken disk", [](const TempFolder&) {}, sWrite},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const FailureRecorder failures;
        const TempFolder folder;
        c.prepare(folder);
        const std::string sBefore = TextIfFile(folder);
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
        EXPECT_EQ(sBefore, TextIfFile(folder));
    }
}

TEST(Config, FolderIsMadeOneLevelDeep)
{
    const FailureRecorder failures;
    const LibraryLog log;
    const TempFolder folder;
    Config config, tooDeep;
    EXPECT_TRUE(config.Load(folder.WideFile("new")));
    EXPECT_TRUE(fs::exists(folder.File("new/lsConfigHDR.xml")));
    EXPECT_FALSE(tooDeep.Load(folder.WideFile("a/b")));
    EXPECT_EQ(std::vector<std::string>{"Write config error!"}, log.Lines());
}

TEST(Config, FullDiskAtTheEndLeavesTheOldFile)
{
    const FailureRecorder failures;
    const LibraryLog log;
    const TempFolder folder;
    std::string sOld;
    {
        Config config;
        ASSERT_TRUE(config.Load(Wide(folder)));
        sOld = Text(folder);
        config.m_language = "French";
        const ResourceLimit full(RLIMIT_FSIZE, 100);
        EXPECT_FALSE(config.Overwrite());
    }
    EXPECT_NE(Text(folder), sOld) << "space again at the end";
    sOld = Text(folder);
    {
        auto config = std::make_unique<Config>();
        ASSERT_TRUE(config->Load(Wide(folder)));
        config->m_language = "German";
        const ResourceLimit full(RLIMIT_FSIZE, 100);
        config.reset();
    }
    EXPECT_EQ(sOld, Text(folder));
    EXPECT_EQ(std::vector<std::string>{NAME}, folder.Names());
    EXPECT_EQ(std::vector<std::string>{"Overwrite config error!"}, log.Lines());
    EXPECT_EQ(2U, failures.Lines().size());
}

TEST(Config, OneInstance)
{
    const LibraryLog log;
    const TempFolder folder;
    Config::DestroyInstance();
    Config* const pConfig = Config::Instance();
    EXPECT_EQ(pConfig, Config::Instance());
    EXPECT_FALSE(pConfig->Write()) << "nobody has said where";
    EXPECT_TRUE(pConfig->Load(Wide(folder)));
    pConfig->m_language = "French";
    Config::DestroyInstance();
    EXPECT_NE(std::string::npos, Text(folder).find("Language=\"French\""));
    EXPECT_EQ("English (U.S.)", Config::Instance()->m_language) << "a new one";
    Config::DestroyInstance();
}
