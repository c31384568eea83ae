// Shows one page of the gallery: "gallery NAME", or the names of all: "gallery --list". Not installed.
#include "tests/gallery/Gallery.h"

#include <wx/app.h>
#include <wx/image.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace {

class GalleryApp : public wxApp {
public:
    bool OnInit() override
    {
        wxInitAllImageHandlers();
        const std::string sName = argc > 1 ? argv[1].ToStdString() : "";
        const auto pages = LS::Gallery::Pages();
        const auto page = std::find_if(pages.begin(), pages.end(),
                                       [&](const LS::Gallery::Page& p) { return p.name == sName; });
        if (page == pages.end()) {
            std::fprintf(stderr, "no such page: %s\n", sName.c_str());
            return false;
        }
        wxTopLevelWindow* const pWindow = page->create();
        SetTopWindow(pWindow);
        return pWindow->Show() || pWindow->IsShown();
    }
};

} // namespace

wxIMPLEMENT_APP_NO_MAIN(GalleryApp);

int main(int argc, char** argv)
{
    if (argc > 1 && std::string(argv[1]) == "--list") {
        for (const LS::Gallery::Page& page : LS::Gallery::Pages())
            std::puts(page.name.c_str());
        return 0;
    }
    return wxEntry(argc, argv);
}
