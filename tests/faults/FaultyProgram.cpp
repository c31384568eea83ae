// Runs the headless program into a fault and looks at what is left.
#include "tests/faults/FaultyProgram.h"

#include "tests/cli/Photographs.h"
#include "tests/support/RgbeReader.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

namespace LS::Tests {

namespace {

constexpr std::string_view OLDER = "an older file";

std::vector<std::string> OutputOptions(const std::string& sOutput)
{
    if (sOutput.ends_with(".crv"))
        return {"--save-curve", sOutput};
    if (sOutput == "ldr.tif")
        return {"-o", sOutput, "--depth", "8"};
    return {"-o", sOutput};
}

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

bool IsClearOutcome(int nCode)
{
    return nCode == 0 || (nCode >= 2 && nCode <= 4);
}

std::vector<std::string> NamesIn(const std::string& sFolder)
{
    std::vector<std::string> vsNames;
    for (const auto& entry : std::filesystem::directory_iterator(sFolder))
        vsNames.push_back(entry.path().filename().native());
    std::sort(vsNames.begin(), vsNames.end());
    return vsNames;
}

const std::vector<std::vector<std::string>>& AllOutputs()
{
    static const std::vector<std::vector<std::string>> vsRuns{
        {"x.bmp", "x.crv", "x.exr", "x.hdr", "x.jpg", "x.png", "x.tif"}, {"ldr.tif"}};
    return vsRuns;
}

FaultyProgram::FaultyProgram(int nWidth, int nHeight)
    : m_vsImages(WriteSeries(m_sources.Path(), nWidth, nHeight))
{
}

ProgramRun FaultyProgram::Merge(const std::vector<std::string>& vsOutputs, RunOptions options)
{
    return MergeWith({}, vsOutputs, std::move(options));
}

ProgramRun FaultyProgram::MergeWith(std::vector<std::string> vsArguments,
                                    const std::vector<std::string>& vsOutputs, RunOptions options)
{
    vsArguments.insert(vsArguments.end(), m_vsImages.begin(), m_vsImages.end());
    vsArguments.emplace_back("--force");
    for (const std::string& sOutput : vsOutputs) {
        const auto vsOptions = OutputOptions(sOutput);
        vsArguments.insert(vsArguments.end(), vsOptions.begin(), vsOptions.end());
    }
    if (options.folder.empty())
        options.folder = m_outputs.Path();
    if (options.timeLimit < 0)
        options.timeLimit = MOST_SECONDS;
    options.environment.insert(options.environment.begin(), "TMPDIR=" + m_temporary.Path());
    return RunProgram(vsArguments, options);
}

void FaultyProgram::PutOlderFiles(const std::vector<std::string>& vsOutputs, const std::string& sFolder) const
{
    for (const std::string& sOutput : vsOutputs)
        WriteText((sFolder.empty() ? m_outputs.Path() : sFolder) + "/" + sOutput, OLDER);
}

void FaultyProgram::RemoveOutputs() const
{
    for (const std::string& sName : m_outputs.Names())
        std::filesystem::remove_all(m_outputs.File(sName));
}

const std::map<std::string, Bytes>& FaultyProgram::Untroubled(const std::vector<std::string>& vsOutputs)
{
    auto& files = m_untroubled[vsOutputs];
    if (files.empty()) {
        const TempFolder folder;
        RunOptions options;
        options.folder = folder.Path();
        const ProgramRun run = Merge(vsOutputs, options);
        EXPECT_EQ(0, run.code) << run.err;
        for (const std::string& sOutput : vsOutputs)
            files[sOutput] = ReadBytes(folder.File(sOutput));
    }
    return files;
}

void FaultyProgram::ExpectCleanOutcome(const ProgramRun& run, const std::vector<std::string>& vsOutputs,
                                       const std::string& sFolder)
{
    const std::string& sOutputs = sFolder.empty() ? m_outputs.Path() : sFolder;
    EXPECT_TRUE(IsClearOutcome(run.code)) << run.code << "\n" << run.err;
    if (run.code != 0) {
        EXPECT_NE("", run.err) << "a failure is told";
    }
    ExpectWholeFiles(run, vsOutputs, sOutputs);
    EXPECT_EQ(vsOutputs, NamesIn(sOutputs));
    EXPECT_EQ(std::vector<std::string>(), m_temporary.Names());
}

void FaultyProgram::ExpectWholeFiles(const ProgramRun& run, const std::vector<std::string>& vsOutputs,
                                     const std::string& sFolder)
{
    for (const auto& [sOutput, whole] : Untroubled(vsOutputs)) {
        const Bytes now = ReadBytes(std::filesystem::path(sFolder) / sOutput);
        const bool bOlder = run.code != 0 && now == Bytes(OLDER.begin(), OLDER.end());
        EXPECT_TRUE(bOlder || SameContent(sOutput, now, whole))
            << sOutput << " has " << now.size() << " bytes; code " << run.code;
    }
}

} // namespace LS::Tests
