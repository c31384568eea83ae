// The entry of the window program.
#include "app/LumiStrandHDRApp.h"

#include "Util/OpenFiles.h"
#include "Util/Paths.h"

#include <string>
#include <vector>

#include <wx/init.h>

wxIMPLEMENT_APP_NO_MAIN(LumiStrandHDRApp); // NOLINT(google-explicit-constructor): the library's macro

int main(int argc, char** argv)
{
    wxDISABLE_DEBUG_SUPPORT();
    LS::Util::AllowManyOpenFiles();
    // The arguments are paths: the library would read them by the locale, which may know no such letters.
    std::vector<std::wstring> vsArguments;
    for (int i = 0; i < argc; ++i)
        vsArguments.push_back(LS::Util::WidePath(argv[i]));
    std::vector<wchar_t*> vszArguments;
    for (std::wstring& sArgument : vsArguments)
        vszArguments.push_back(sArgument.data());
    vszArguments.push_back(nullptr);
    return wxEntry(argc, vszArguments.data());
}
