// The application: starts and stops the program.
#pragma once

#include <fstream>
#include <memory>

#include <wx/app.h>
#include <wx/log.h>

class LumiStrandHDRFrm;

/// Brings settings, log, main window and splash up in a fixed order, hands files of the command line to the
/// main window, and takes everything down again.
class LumiStrandHDRApp : public wxApp {
public:
    /// @return false if the program can't start, which has been told; then nothing of it is left behind
    bool OnInit() override;
    int OnExit() override;
    void OnFatalException() override;
    void OnInitCmdLine(wxCmdLineParser& parser) override;
    bool OnCmdLineParsed(wxCmdLineParser& parser) override;
    bool OnCmdLineHelp(wxCmdLineParser& parser) override;
    bool OnCmdLineError(wxCmdLineParser& parser) override;

private:
    bool Start();
    void Abandon();
    void StartLog();
    void StopLog();
    void CreateMainWindow();
    void ShowMainWindow();

    LumiStrandHDRFrm* m_frame = nullptr; ///< the toolkit owns it
    wxLog* m_previousLog = nullptr;      ///< what was active before the log began; null if nothing was
    std::unique_ptr<std::ofstream> m_logStream;
    wxLogChain* m_logChain = nullptr; ///< the active target while the program runs; owned
};
