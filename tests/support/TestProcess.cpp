// Fatal library assertions, a private cache folder, and what the sanitizers shall pass over.
#include "tests/support/TestProcess.h"

#include "engine/CacheFolder.h"
#include "tests/support/TempFolder.h"

#include <wx/debug.h>
#include <wx/string.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

/// Faults inside libraries that the address sanitizer shall pass over.
extern "C" const char* __asan_default_suppressions() // NOLINT(bugprone-reserved-identifier): its fixed name
{
    // wxWidgets moves the text of an XPM file within one buffer by strncpy; decoders run in their own
    // process.
    return "interceptor_via_fun:wxXPMDecoder::ReadFile\n";
}

/// Memory that the leak checker shall pass over.
extern "C" const char* __lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier): its fixed name
{
    return LS::Tests::LeaksOfLibraries();
}

namespace LS::Tests {

void PrepareTestProcess()
{
    wxSetAssertHandler([](const wxString& file, int line, const wxString&, const wxString& condition,
                          const wxString& message) {
        std::fprintf(stderr, "%s:%d: %s %s\n", file.utf8_str().data(), line, condition.utf8_str().data(),
                     message.utf8_str().data());
        std::abort();
    });
    // Goes after main's last line and before the workspace, which empties the folder once more.
    static const TempFolder home;
    RedirectCacheFolder(home.WideFile("hdrcache"));
}

const char* LeaksOfLibraries()
{
    // fontconfig keeps the patterns of the fonts in use until the process ends; setlocale loses its list of
    // folders each time that LOCPATH names some.
    return "leak:libfontconfig\nleak:__argz_add_sep\n";
}

std::size_t OpenDescriptors()
{
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

} // namespace LS::Tests
