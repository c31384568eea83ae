// What the user of the command line sees.
#pragma once

#include "cli/ExitCode.h"
#include "cli/Options.h"
#include "engine/ProgbarSetter.h"

#include <string>

/// Errors go to the error stream, one line each; so does the progress bar, where that is a terminal. All
/// else goes to the standard output.
class Console : public ProgressTarget {
public:
    explicit Console(Verbosity verbosity);
    ~Console() override;
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// "lumistrand-hdr-cli: subject: text"; an empty subject is left out.
    void Error(const std::string& sSubject, const std::string& sText);

    /// Tells why the job ends. After a cancel that is the reason, whatever failed because of it.
    /// @return code, or Cancelled
    ExitCode Fail(ExitCode code, const std::string& sSubject, const std::string& sText);

    /// As Error, for what the user should know and nobody failed at; unless quiet.
    void Note(const std::string& sSubject, const std::string& sText);

    void Print(const std::string& sLine);  ///< in any case
    void Say(const std::string& sLine);    ///< unless quiet
    void Detail(const std::string& sLine); ///< only if verbose

    /// Moves the bar. @return false once the user asked to stop
    bool Update(int value, const wxString& newmsg, bool* skip) override;

private:
    void ClearBar();

    Verbosity m_verbosity;
    bool m_bShowsBar;
    bool m_bBarOnScreen = false;
};

/// Ends the process when its work is done and its objects are gone. What the standard output could not take
/// was lost, which whoever reads it has to know: then a message tells it, and Done becomes Write.
///
/// The libraries' own destructors don't run: some ask for memory and die without it.
[[noreturn]] void Leave(ExitCode code);

/// printf into a string.
[[gnu::format(printf, 1, 2)]] std::string Formatted(const char* szFormat, ...);
