// Starts and stops the program.
#include "app/LumiStrandHDRApp.h"

#include "Util/FailureLog.h"
#include "Util/Paths.h"
#include "Util/RegularFile.h"
#include "Widgets/SashSplitter.h"
#include "app/AboutSplashWnd.h"
#include "app/AppIpc.h"
#include "app/EndRequest.h"
#include "app/FileArgument.h"
#include "app/SingleInstance.h"
#include "engine/CacheFolder.h"
#include "engine/HDRWorkspace.h"
#include "frame/LumiStrandHDRFrm.h"
#include "frame/Messages.h"
#include "image/ImageCache.h"
#include "image/ImageDecoder.h"
#include "xml/Config.h"

#include <csignal>
#include <utility>

#include <wx/cmdline.h>
#include <wx/filefn.h>
#include <wx/intl.h>
#include <wx/msgdlg.h>

wxDECLARE_APP(LumiStrandHDRApp);

namespace {

constexpr const char* LOG_FILE = "HDRLog.log";
constexpr int END_RETRY_MS = 50;

bool g_bDone = false;

/// The folder of the executable, where the log goes and where relative paths begin.
void EnterProgramFolder(const wxString& executable)
{
    const wxString folder = wxPathOnly(executable);
    const wxLogNull quiet; // a start through the search path names no folder
    if (folder.empty() || !wxSetWorkingDirectory(folder))
        wxSetWorkingDirectory(LS::Util::ProgramFolder());
}

/// A window manager places a window itself when it appears, and reports its size then for the first time:
/// that is the moment to centre it.
/// @param placed  called from the event loop once the window stands there
void CentreOncePlaced(wxTopLevelWindow& window, const std::function<void()>& placed)
{
    enum class Placing { Hidden, Shown, Done };
    const auto placing = std::make_shared<Placing>(Placing::Hidden);
    window.Bind(wxEVT_SHOW, [placing](wxShowEvent& event) {
        if (*placing == Placing::Hidden && event.IsShown())
            *placing = Placing::Shown;
        event.Skip();
    });
    window.Bind(wxEVT_SIZE, [placing, placed, &window](wxSizeEvent& event) {
        if (*placing == Placing::Shown && window.GetSize().x >= window.GetMinSize().x) {
            *placing = Placing::Done;
            window.Centre(wxBOTH);
            window.CallAfter(placed);
        }
        event.Skip();
    });
}

/// A folder or a pipe in the place of the log isn't opened: the program would wait for the pipe's reader.
std::unique_ptr<std::ofstream> OpenLogFile()
{
    auto stream = std::make_unique<std::ofstream>();
    std::string sReason;
    if (LS::Util::IsMissing(LOG_FILE) || LS::Util::IsRegularFile(LOG_FILE, sReason))
        stream->open(LOG_FILE, std::ios::out | std::ios::trunc);
    *stream << std::unitbuf; // a crash shall lose nothing
    return stream;
}

} // namespace

LumiStrandHDRApp::LumiStrandHDRApp()
{
    SetAppDisplayName("Tolvanic Lumistrand"); // on boxes that come up before there is a log
    m_endTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { EndBySignal(m_nEndSignal); });
}

LumiStrandHDRApp::~LumiStrandHDRApp() = default;

bool LumiStrandHDRApp::OnInit()
{
    if (Start())
        return true;
    Abandon();
    return false;
}

bool LumiStrandHDRApp::IsDone()
{
    return g_bDone;
}

bool LumiStrandHDRApp::Start()
{
    if (ShowHelp() || !CheckSingleInstance())
        return false;
    OwnCacheFolder();
    OnEndingSignals(*this, [](int nSignal) { wxGetApp().EndBySignal(nSignal); });
    OnLostDisplay([] { wxGetApp().TakeDown(); });
    if (!Config::Instance()->Load())
        return false;
    RegisterImageHandlers();
    EnterProgramFolder(argv[0]);
    wxHandleFatalExceptions(true);
    StartLog();
    LoadLanguage();
    LS::Widgets::WidenSashes();
    ImageCache::SetMessageSink(ShowError);
    AboutSplashWnd splash(nullptr, wxID_ANY, wxGetTranslation("Tolvanic Lumistrand"));
    CreateMainWindow();
    splash.Centre(wxBOTH);
    splash.ShowModal();
    ShowMainWindow();
    return wxApp::OnInit();
}

bool LumiStrandHDRApp::CheckSingleInstance()
{
    InstanceCheck check = ::CheckSingleInstance(argv.GetArguments(), *this);
    m_instanceChecker = std::move(check.lock);
    m_server = std::move(check.server);
    g_bDone = check.outcome == StartOutcome::HandedOver;
    return check.outcome == StartOutcome::First;
}

/// Help is for the process that is asked for it, whether or not another one runs.
bool LumiStrandHDRApp::ShowHelp()
{
    wxCmdLineParser parser(argc, argv);
    OnInitCmdLine(parser);
    constexpr int HELP_ASKED = -1;
    if (parser.Parse(false) != HELP_ASKED)
        return false;
    OnCmdLineHelp(parser);
    g_bDone = true;
    return true;
}

void LumiStrandHDRApp::LoadLanguage()
{
    LanguageChoice choice = ::LoadLanguage(LS::Util::ProgramFolder(), *Config::Instance());
    m_locale = std::move(choice.locale);
    m_languages = std::move(choice.languages);
}

bool LumiStrandHDRApp::IsBusy() const
{
    return !m_bPlaced || m_frame->IsBusy();
}

void LumiStrandHDRApp::AddFiles(const wxArrayString& paths)
{
    m_frame->AddFiles(paths);
}

/// What a failed start leaves is taken away, and what it had to say is shown.
void LumiStrandHDRApp::Abandon()
{
    wxLog::FlushActive();
    m_locale.reset();
    m_instanceChecker.reset();
    m_server.reset();
    StopLog();
}

void LumiStrandHDRApp::StartLog()
{
    // The library owns its targets.
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
    m_previousLog = wxLog::SetActiveTarget(new wxLogStderr);
    wxLog::SetTimestamp("%m/%d/%Y %H:%M:%S");
    m_logStream = OpenLogFile();
    wxLog::SetLogLevel(wxLOG_Message);
    m_logChain = new wxLogChain(new wxLogStream(m_logStream.get()));
    m_logChain->PassMessages(true);
    LS::Util::SetFailureSink([](const std::string& sLine) { wxLogError("%s", wxString::FromUTF8(sLine)); });
}

void LumiStrandHDRApp::StopLog()
{
    if (!m_logChain)
        return;
    LS::Util::SetFailureSink({});
    delete m_logChain; // makes the log of the error stream active again
    m_logChain = nullptr;
    delete wxLog::SetActiveTarget(m_previousLog);
    m_previousLog = nullptr;
    m_logStream.reset();
}

void LumiStrandHDRApp::CreateMainWindow()
{
    m_frame =
        new LumiStrandHDRFrm(nullptr, wxID_ANY, wxGetTranslation("Tolvanic Lumistrand - Create HDR Image"));
}

void LumiStrandHDRApp::ShowMainWindow()
{
    m_frame->Centre(wxBOTH);
    CentreOncePlaced(*m_frame, [this] {
        m_bPlaced = true;
        if (!m_commandLineFiles.empty())
            m_frame->AddFiles(m_commandLineFiles);
    });
    m_frame->Show();
    SetTopWindow(m_frame);
}

/// A job stops first, or comes to its end where it can't be stopped, so that no half file stays. A dialog is
/// in the way of an ordinary end, so this one doesn't go through the loop.
void LumiStrandHDRApp::EndBySignal(int nSignal)
{
    if (m_frame && m_frame->IsWorking()) {
        RequestCancel();
        m_nEndSignal = nSignal;
        m_endTimer.StartOnce(END_RETRY_MS);
        return;
    }
    TakeDown();
    std::signal(nSignal, SIG_DFL);
    std::raise(nSignal);
}

int LumiStrandHDRApp::OnExit()
{
    TakeDown();
    return 0;
}

void LumiStrandHDRApp::TakeDown()
{
    Config::DestroyInstance();
    EmptyCacheFolder();
    ImageCache::DestroyInstance();
    m_locale.reset();
    m_instanceChecker.reset();
    m_server.reset();
    StopLog();
}

void LumiStrandHDRApp::OnFatalException()
{
    wxMessageBox(
        wxGetTranslation("Unknown Error! Please report this bug to Tolvanic, thank you! (Don't forget "
                         "the log file at root folder of application.)"),
        wxGetTranslation("Tolvanic Lumistrand"), wxOK | wxCENTRE);
}

void LumiStrandHDRApp::OnInitCmdLine(wxCmdLineParser& parser)
{
    wxApp::OnInitCmdLine(parser);
    parser.SetLogo(GetAppName() + "\n");
    parser.SetSwitchChars("-");
    parser.AddSwitch("V", "version", "show version information");
    parser.AddParam("url(s)", wxCMD_LINE_VAL_STRING, wxCMD_LINE_PARAM_OPTIONAL | wxCMD_LINE_PARAM_MULTIPLE);
}

bool LumiStrandHDRApp::OnCmdLineParsed(wxCmdLineParser& parser)
{
    if (!wxApp::OnCmdLineParsed(parser))
        return false;
    if (parser.GetParamCount() == 0)
        return true;
    m_commandLineFiles = PathsOfFileArgument(argv[argc - 1]);
    return true;
}

bool LumiStrandHDRApp::OnCmdLineHelp(wxCmdLineParser& parser)
{
    return wxApp::OnCmdLineHelp(parser);
}

bool LumiStrandHDRApp::OnCmdLineError(wxCmdLineParser& parser)
{
    return wxApp::OnCmdLineError(parser);
}
