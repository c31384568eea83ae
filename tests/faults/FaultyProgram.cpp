// Runs the headless program into a fault and looks at what is left.
#include "tests/faults/FaultyProgram.h"

#include "tests/cli/Photographs.h"
#include "tests/support/RgbeReader.h"

#include <filesystem>
#include <string_view>

namespace LS::Tests {

namespace {

constexpr std::string_view OLDER = "an older file";

/// Whether two files are the same. Without memory a Radiance file is written flat instead of in planes, and a
/// JPEG loses the quality that was asked for, as the image library keeps it in a text.
bool SameContent(const std::string& sName, const Bytes& now, const Bytes& whole)
{
    if (now == whole)
        return true;
    if (sName.ends_with(".hdr"))
        return !now.empty() && ReadRgbe(now).vPixels == ReadRgbe(whole).vPixels;
    const auto ends = [](const Bytes& bytes) { return bytes.size() > 4 && bytes.end()[-1] == 0xD9; };
    return sName.ends_with(".jpg") && ends(now) && ends(whole);
}

} // namespace

FaultyProgram::FaultyProgram(int nWidth, int nHeight)
    : m_vsImages(WriteSeries(m_sources.Path(), nWidth, nHeight))
{
}

ProgramRun FaultyProgram::Merge(const Names& outputs, RunOptions options, Arguments arguments) const
{
    arguments.insert(arguments.end(), m_vsImages.begin(), m_vsImages.end());
    arguments.emplace_back("--force");
    for (const std::string& sOutput : outputs) {
        arguments.insert(arguments.end(), {sOutput.ends_with(".crv") ? "--save-curve" : "-o", sOutput});
        if (sOutput == "ldr.tif")
            arguments.insert(arguments.end(), {"--depth", "8"});
    }
    if (options.timeLimit < 0)
        options.timeLimit = MOST_SECONDS;
    return Run(arguments, options);
}

void FaultyProgram::PutOlderFiles(const Names& outputs, const std::string& sFolder) const
{
    for (const std::string& sOutput : outputs)
        WriteText((sFolder.empty() ? m_outputs.Path() : sFolder) + "/" + sOutput, OLDER);
}

const std::map<std::string, Bytes>& FaultyProgram::Untroubled(const Names& outputs)
{
    auto& files = m_untroubled[outputs];
    if (files.empty()) {
        const TempFolder folder;
        RunOptions options;
        options.folder = folder.Path();
        const ProgramRun run = Merge(outputs, options);
        EXPECT_EQ(0, run.code) << run.err;
        for (const std::string& sOutput : outputs)
            files[sOutput] = ReadBytes(folder.File(sOutput));
    }
    return files;
}

void FaultyProgram::ExpectCleanOutcome(const ProgramRun& run, const Names& outputs,
                                       const std::string& sFolder)
{
    const std::string& sOutputs = sFolder.empty() ? m_outputs.Path() : sFolder;
    EXPECT_TRUE(run.code == 0 || (run.code >= 2 && run.code <= 4 && !run.err.empty())) << run.code << "\n"
                                                                                       << run.err;
    ExpectWholeFiles(run, outputs, sOutputs);
    EXPECT_EQ(outputs, NamesIn(sOutputs));
    EXPECT_EQ(Names{}, m_temporary.Names());
}

void FaultyProgram::ExpectWholeFiles(const ProgramRun& run, const Names& outputs, const std::string& sFolder)
{
    for (const auto& [sOutput, whole] : Untroubled(outputs)) {
        const Bytes now = ReadBytes(std::filesystem::path(sFolder) / sOutput);
        const bool bOlder = run.code != 0 && now == Bytes(OLDER.begin(), OLDER.end());
        EXPECT_TRUE(bOlder || SameContent(sOutput, now, whole))
            << sOutput << " has " << now.size() << " bytes; code " << run.code;
    }
}

void FaultyProgram::RemoveTraces() const
{
    for (const TempFolder* const pFolder : {&m_temporary, &m_outputs})
        for (const std::string& sName : pFolder->Names())
            if (sName.find("lumistrand-") <= 1)
                std::filesystem::remove_all(pFolder->File(sName));
}

} // namespace LS::Tests
