// Lines and a progress bar on a terminal.
#include "cli/Console.h"

#include "cli/Cancel.h"

#include <cstdarg>
#include <cstddef>
#include <cstdio>
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

void Console::Say(const std::string& sLine)
{
    if (m_verbosity == Verbosity::Quiet)
        return;
    ClearBar();
    std::printf("%s\n", sLine.c_str());
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

std::string Formatted(const char* szFormat, ...)
{
    std::va_list arguments, again;
    va_start(arguments, szFormat);
    va_copy(again, arguments);
    const int nLength = std::vsnprintf(nullptr, 0, szFormat, arguments);
    va_end(arguments);
    std::string sText(nLength > 0 ? static_cast<std::size_t>(nLength) : 0, '\0');
    std::vsnprintf(sText.data(), sText.size() + 1, szFormat, again);
    va_end(again);
    return sText;
}
