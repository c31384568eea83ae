// The main function of the test programs with windows: an application whose run is the tests.
#include "Util/Paths.h"
#include "engine/CacheFolder.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/image.h>
#include <wx/log.h>

#include <cstdio>
#include <cstdlib>

namespace {

void StopAtLibraryAssertion(const wxString& file, int line, const wxString&, const wxString& condition,
                            const wxString& message)
{
    std::fprintf(stderr, "%s:%d: %s %s\n", file.utf8_str().data(), line, condition.utf8_str().data(),
                 message.utf8_str().data());
    std::abort();
}

class TestApp : public wxApp {
public:
    bool OnInit() override
    {
        // Boxes would block for ever.
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
    wxSetAssertHandler(StopAtLibraryAssertion);
    static const LS::Tests::TempFolder home;
    RedirectCacheFolder(home.WideFile("hdrcache"));
    return wxEntry(argc, argv);
}
