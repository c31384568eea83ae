// A program that does nothing but keep itself to one instance, for tests that need several processes.
// Usage: instance_program STATE [FILE_ARGUMENT]
// STATE is what the first instance does: idle, busy, blocked (runs no event loop), ending (as blocked, and
// over after two seconds). Each line of its output is an event: "first", "ready", "paths P|P", "box ...",
// "over".
#include "app/FileArgument.h"
#include "app/SingleInstance.h"

#include <wx/app.h>
#include <wx/dialog.h>
#include <wx/frame.h>
#include <wx/log.h>
#include <wx/modalhook.h>
#include <wx/msgdlg.h>
#include <wx/timer.h>

#include <cstdio>

namespace {

void Say(const wxString& line)
{
    std::printf("%s\n", line.utf8_str().data());
    std::fflush(stdout);
}

/// Reports message boxes in place of showing them.
class BoxReporter : public wxModalDialogHook {
protected:
    int Enter(wxDialog* dialog) override
    {
        const auto* box = dynamic_cast<wxMessageDialog*>(dialog);
        if (!box)
            return wxID_NONE;
        wxString text = box->GetMessage();
        text.Replace("\n", "/");
        Say(wxString::Format("box %s|%s|%lx", box->GetTitle(), text, box->GetMessageDialogStyle()));
        return wxID_OK;
    }
};

class InstanceProgram : public wxApp, private SecondStartTarget {
public:
    bool OnInit() override;
    int OnExit() override
    {
        m_check = {};
        return 0;
    }

private:
    bool IsBusy() const override { return m_state == "busy"; }
    void AddFiles(const wxArrayString& paths) override { Say("paths " + wxJoin(paths, '|', '\0')); }

    BoxReporter m_reporter;
    InstanceCheck m_check;
    wxString m_state;
    wxFrame* m_frame = nullptr;
};

bool InstanceProgram::OnInit()
{
    delete wxLog::SetActiveTarget(new wxLogStderr); // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
    m_state = argv[1];
    wxArrayString arguments = argv.GetArguments();
    arguments.RemoveAt(1);

    m_reporter.Register();
    m_check = CheckSingleInstance(arguments, *this);
    m_reporter.Unregister();
    const bool bFirst = m_check.outcome == StartOutcome::First;
    Say(bFirst ? "first" : "over");
    if (!bFirst)
        return false;
    if (m_state == "blocked") { // with the lock and the socket, but deaf
        wxSleep(3600);
        return false;
    }
    if (m_state == "ending") { // deaf too, and then gone
        wxSleep(2);
        m_check.lock.reset();
        return false;
    }

    m_frame = new wxFrame(nullptr, wxID_ANY, "First instance");
    m_frame->Show();
    CallAfter([] { Say("ready"); });
    return true;
}

} // namespace

wxIMPLEMENT_APP(InstanceProgram); // NOLINT(google-explicit-constructor): the library's macro
