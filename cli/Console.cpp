// Lines and a progress bar on a terminal.
#include "cli/Console.h"

#include "Util/PixelBuffer.h"
#include "cli/Cancel.h"

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <unistd.h>

namespace {

constexpr int BAR_CELLS = 40;

} // namespace

Console::Console(Verbosity verbosity)
    : m_verbosity(verbosity), m_bShowsBar(verbosity != Verbosity::Quiet && isatty(STDERR_FILENO) == 1)
{
}

Console::~Console()
{
    ClearBar();
}

void Console::Error(const std::string& sSubject, const std::string& sText)
{
    ClearBar();
    std::fflush(stdout);
    std::fprintf(stderr, "lumistrand-hdr-cli: %s%s%s\n", sSubject.c_str(), sSubject.empty() ? "" : ": ",
                 sText.c_str());
}

ExitCode Console::Fail(ExitCode code, const std::string& sSubject, const std::string& sText)
{
    if (CancelRequested()) {
        Error("", "cancelled; nothing was written");
        return ExitCode::Cancelled;
    }
    Error(sSubject, sText);
    return code;
}

void Console::Note(const std::string& sSubject, const std::string& sText)
{
    if (m_verbosity != Verbosity::Quiet)
        Error(sSubject, sText);
}

void Console::Print(const std::string& sLine)
{
    ClearBar();
    std::printf("%s\n", sLine.c_str());
}

void Console::Say(const std::string& sLine)
{
    if (m_verbosity != Verbosity::Quiet)
        Print(sLine);
}

void Console::Detail(const std::string& sLine)
{
    if (m_verbosity == Verbosity::Verbose)
        Say(sLine);
}

bool Console::Update(int value, const wxString&, bool*)
{
    if (m_bShowsBar) {
        const auto nFull = static_cast<std::size_t>(value * BAR_CELLS / 100);
        const std::string sBar = std::string(nFull, '#') + std::string(BAR_CELLS - nFull, '.');
        std::fprintf(stderr, "\r[%s] %3d %%", sBar.c_str(), value);
        m_bBarOnScreen = true;
    }
    return !CancelRequested();
}

void Console::ClearBar()
{
    if (m_bBarOnScreen)
        std::fprintf(stderr, "\r%*s\r", BAR_CELLS + 8, "");
    m_bBarOnScreen = false;
}

void Leave(ExitCode code)
{
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        std::fprintf(stderr, "lumistrand-hdr-cli: standard output: %s\n", std::strerror(errno));
        if (code == ExitCode::Done)
            code = ExitCode::Write;
    }
    std::_Exit(static_cast<int>(code));
}

std::string Formatted(const char* szFormat, ...)
{
    std::va_list arguments;
    va_start(arguments, szFormat);
    char* szText = nullptr;
    const int nLength = vasprintf(&szText, szFormat, arguments);
    va_end(arguments);
    if (nLength < 0)
        throw std::bad_alloc();
    const std::unique_ptr<char, LS::Util::FreeDeleter> pText(szText);
    return {szText, static_cast<std::size_t>(nLength)};
}
