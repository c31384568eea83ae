// Starts the window program as a user's desktop does.
#include "tests/program/WindowProgram.h"

#include "tests/cli/Photographs.h"
#include "tests/support/TestProcess.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>

namespace fs = std::filesystem;

namespace LS::Tests {

WindowProgram::WindowProgram(const std::string& sFolder, const std::string& sHome)
    : m_sFolder(sFolder), m_sHome(sHome)
{
    for (const std::string& sName : {sFolder + "/curve", sHome, std::string("runtime")})
        fs::create_directories(m_folder.File(sName));
    fs::permissions(m_folder.File("runtime"), fs::perms::owner_all);
    fs::copy_file(LS_WINDOW_PROGRAM, File("lumistrand-hdr"));
    WriteText(m_folder.File("leaks"), LeaksOfLibraries());
    m_vsVariables = {"HOME=" + Home(), "XDG_RUNTIME_DIR=" + m_folder.File("runtime"),
                     // The sanitized program reads it.
                     "LSAN_OPTIONS=print_suppressions=0:suppressions=" + m_folder.File("leaks")};
}

Process WindowProgram::StartAgain(const std::vector<std::string>& vsArguments)
{
    const std::string sOutput = m_folder.File("output" + std::to_string(m_nStarts++));
    return Process({File("lumistrand-hdr"), vsArguments, m_vsVariables, sOutput, sOutput});
}

Process WindowProgram::StartOther(const std::string& sFile) const
{
    const std::string sOutput = m_folder.File("output of other");
    Process other({LS_DRAG_SOURCE, {sFile}, {}, sOutput, sOutput});
    EXPECT_TRUE(WaitUntilActive(OTHER_TITLE));
    return other;
}

bool WindowProgram::StartToMainWindow(const std::vector<std::string>& vsArguments)
{
    Start(vsArguments);
    if (!WaitForWindow(SPLASH_TITLE))
        return false;
    ClickWindow(SPLASH_TITLE);
    if (!WaitForWindow(FRAME_TITLE))
        return false;
    WaitUntilIdle(); // files of the command line come when the window stands in its place
    return true;
}

std::string WindowProgram::SeriesArgument(int nWidth, int nHeight) const
{
    std::string sArgument = "open";
    for (const std::string& sPath : WriteSeries(m_folder.Path(), nWidth, nHeight))
        sArgument += "|" + sPath;
    return sArgument;
}

bool WindowProgram::StartWithSeries(int nWidth, int nHeight)
{
    return StartToMainWindow({SeriesArgument(nWidth, nHeight)}) && WaitUntilActive(FRAME_TITLE);
}

bool WindowProgram::Merge() const
{
    // Three working files for the photographs, and one of the result.
    return GiveMergeCommand() && Becomes([this] { return CacheFiles().size() == 4; }) &&
           WaitUntilGone(JOB_TITLE) && WaitUntilActive(FRAME_TITLE);
}

std::string WindowProgram::Log() const
{
    return ReadText(File("HDRLog.log"));
}

std::vector<std::string> WindowProgram::LogLines() const
{
    std::vector<std::string> vsLines;
    std::istringstream log(Log());
    for (std::string sLine; std::getline(log, sLine);)
        vsLines.push_back(sLine);
    return vsLines;
}

std::vector<std::string> WindowProgram::CacheFiles() const
{
    return fs::exists(File("hdrcache")) ? NamesIn(File("hdrcache")) : std::vector<std::string>();
}

std::vector<std::string> WindowProgram::LocksAndSockets() const
{
    std::vector<std::string> vsNames;
    for (const std::string& sFolder : {Home(), m_folder.File("runtime")})
        for (const auto& entry : fs::directory_iterator(sFolder))
            if (entry.is_socket() || entry.path().filename().string().starts_with("LumiStrandHDR-"))
                vsNames.push_back(entry.path().filename());
    return vsNames;
}

void WindowProgram::ExpectNothingLeft() const
{
    EXPECT_THAT(LocksAndSockets(), testing::IsEmpty());
    EXPECT_THAT(CacheFiles(), testing::IsEmpty());
}

} // namespace LS::Tests
