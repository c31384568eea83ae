// A window that files can be dragged from, as from a file manager. Usage: drag_source PATH...
#include <wx/app.h>
#include <wx/dataobj.h>
#include <wx/dnd.h>
#include <wx/frame.h>
#include <wx/panel.h>

#include <cstdio>

namespace {

/// For who drives the pointer.
void Say(const char* szWord)
{
    std::puts(szWord);
    std::fflush(stdout);
}

class DragSource : public wxApp {
public:
    bool OnInit() override
    {
        auto* const frame = new wxFrame(nullptr, wxID_ANY, "Drag source", wxPoint(0, 0), wxSize(200, 100));
        auto* const panel = new wxPanel(frame);
        panel->Bind(wxEVT_LEFT_DOWN, [this, panel](wxMouseEvent&) {
            wxFileDataObject files;
            for (int i = 1; i < argc; ++i)
                files.AddFile(argv[i]);
            Say("begins");
            wxDropSource(files, panel).DoDragDrop();
            Say("ended");
        });
        return frame->Show();
    }
};

} // namespace

wxIMPLEMENT_APP(DragSource); // NOLINT(google-explicit-constructor): the library's macro
