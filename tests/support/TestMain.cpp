// The main function of the test programs without windows: a private cache folder, fatal library assertions.
#include "Util/Paths.h"
#include "engine/CacheFolder.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <wx/debug.h>
#include <wx/string.h>

#include <cstdio>
#include <cstdlib>

/// Faults inside libraries that the address sanitizer shall pass over.
extern "C" const char* __asan_default_suppressions() // NOLINT(bugprone-reserved-identifier): its fixed name
{
    // wxWidgets moves the text of an XPM file within one buffer by strncpy; decoders run in their own
    // process.
    return "interceptor_via_fun:wxXPMDecoder::ReadFile\n";
}

namespace {

void StopAtLibraryAssertion(const wxString& file, int line, const wxString&, const wxString& condition,
                            const wxString& message)
{
    std::fprintf(stderr, "%s:%d: %s %s\n", file.utf8_str().data(), line, condition.utf8_str().data(),
                 message.utf8_str().data());
    std::abort();
}

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    wxSetAssertHandler(StopAtLibraryAssertion);
    // Never destroyed before the workspace, which empties this folder at the very end of the process.
    static const LS::Tests::TempFolder home;
    RedirectCacheFolder(home.WideFile("hdrcache"));
    return RUN_ALL_TESTS();
}
