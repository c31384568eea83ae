// The entry of the window program.
#include "app/LumiStrandHDRApp.h"

#include "Util/HeapPolicy.h"
#include "Util/OpenFiles.h"
#include "Util/Paths.h"

#include <cstddef>
#include <cstdlib>
#include <string>
#include <vector>

#include <wx/init.h>

wxIMPLEMENT_APP_NO_MAIN(LumiStrandHDRApp); // NOLINT(google-explicit-constructor): the library's macro

int main(int argc, char** argv)
{
    wxDISABLE_DEBUG_SUPPORT();
    LS::Util::AllowManyOpenFiles();
    LS::Util::KeepFreedImages();
    // The arguments are paths: the library would read them by the locale, which may know no such letters.
    const auto nArguments = static_cast<std::size_t>(argc);
    std::vector<std::wstring> vsArguments(nArguments);
    std::vector<wchar_t*> vszArguments(nArguments + 1); // the last one stays null
    for (std::size_t i = 0; i < nArguments; ++i) {
        vsArguments[i] = LS::Util::WidePath(argv[i]);
        vszArguments[i] = vsArguments[i].data();
    }
    const int nStatus = wxEntry(argc, vszArguments.data());
    return LumiStrandHDRApp::IsDone() ? EXIT_SUCCESS : nStatus;
}
