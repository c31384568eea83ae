// The main function of the test programs with windows: an application whose run is the tests.
#include "tests/support/TestProcess.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/image.h>
#include <wx/log.h>

namespace {

class TestApp : public wxApp {
public:
    bool OnInit() override
    {
        // Boxes would block for ever. The library owns the new target.
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
        return RUN_ALL_TESTS();
    }
};

} // namespace

wxIMPLEMENT_APP_NO_MAIN(TestApp); // NOLINT(google-explicit-constructor): the library's macro

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    LS::Tests::PrepareTestProcess();
    return wxEntry(argc, argv);
}
