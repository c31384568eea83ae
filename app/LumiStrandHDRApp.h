// The application: starts and stops the program.
#pragma once

#include "app/Language.h"
#include "app/SecondStartTarget.h"

#include <fstream>
#include <memory>

#include <wx/app.h>
#include <wx/log.h>
#include <wx/timer.h>

class CAppServer;
class InstanceLock;
class LumiStrandHDRFrm;

/// Brings the single-instance service, settings, log, main window and splash up in a fixed order, hands files
/// of the command line to the main window, and takes everything down again.
class LumiStrandHDRApp : public wxApp, private SecondStartTarget {
public:
    LumiStrandHDRApp();
    LumiStrandHDRApp(const LumiStrandHDRApp&) = delete;
    LumiStrandHDRApp& operator=(const LumiStrandHDRApp&) = delete;
    ~LumiStrandHDRApp() override;

    /// @return false if the program can't start, which has been reported, or has nothing more to do;
    ///         then nothing of it is left behind
    bool OnInit() override;
    int OnExit() override;
    void OnFatalException() override;
    void OnInitCmdLine(wxCmdLineParser& parser) override;
    bool OnCmdLineParsed(wxCmdLineParser& parser) override;
    bool OnCmdLineHelp(wxCmdLineParser& parser) override;
    bool OnCmdLineError(wxCmdLineParser& parser) override;

    /// Whether a start that ended at once did what it was asked for: it printed the help, or handed its files
    /// to the running instance.
    static bool IsDone();

private:
    bool IsBusy() const override;
    void AddFiles(const wxArrayString& paths) override;

    bool Start();
    bool ShowHelp();
    bool CheckSingleInstance();
    void LoadLanguage();
    void Abandon();
    void StartLog();
    void StopLog();
    void CreateMainWindow();
    void ShowMainWindow();
    void EndBySignal(int nSignal);
    void TakeDown();

    LumiStrandHDRFrm* m_frame = nullptr; ///< the toolkit owns it
    bool m_bPlaced = false;              ///< the main window stands where it belongs, and takes files
    wxArrayString m_commandLineFiles;    ///< wait for that
    std::unique_ptr<InstanceLock> m_instanceChecker;
    std::unique_ptr<CAppServer> m_server;
    wxLog* m_previousLog = nullptr; ///< what was active before the log began; null if nothing was
    std::unique_ptr<std::ofstream> m_logStream;
    wxLogChain* m_logChain = nullptr;   ///< the active target while the program runs; owned
    std::unique_ptr<wxLocale> m_locale; ///< null: the program's own English texts
    LanguageMap m_languages;
    wxTimer m_endTimer; ///< while a job keeps the program from ending by m_nEndSignal
    int m_nEndSignal = 0;
};
