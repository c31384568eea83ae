// An application around tests and measurements that need windows.
#pragma once

#include <functional>
#include <utility>

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/image.h>
#include <wx/log.h>

namespace LS::Tests {

/// Its event loop is active, and its only work is a function; log messages go to the error stream, since
/// boxes would block for ever.
class WindowApp : public wxApp {
public:
    explicit WindowApp(std::function<int()> work) : m_work(std::move(work)) {}

    bool OnInit() override
    {
        // The library owns the new target.
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
        delete wxLog::SetActiveTarget(new wxLogStderr);
        wxInitAllImageHandlers();
        SetExitOnFrameDelete(false);
        return true;
    }

    int OnRun() override
    {
        wxEventLoop loop;
        const wxEventLoopActivator active(&loop);
        return m_work();
    }

private:
    std::function<int()> m_work;
};

/// Runs such an application. @return what the function gives
inline int RunWithWindows(int argc, char** argv, std::function<int()> work)
{
    wxApp::SetInstance(new WindowApp(std::move(work))); // the library deletes it
    return wxEntry(argc, argv);
}

} // namespace LS::Tests
