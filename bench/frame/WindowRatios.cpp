// The whole job in the window, with its dialogs, beside the same run of the headless program.
#include "Util/HeapPolicy.h"
#include "bench/support/HeadlessRun.h"
#include "bench/support/Photographs.h"
#include "bench/support/Ratios.h"
#include "engine/CacheFolder.h"
#include "engine/HDRRoutine.h"
#include "frame/JobProgress.h"
#include "frame/LumiStrandHDRFrm.h"
#include "frame/SourceGrid.h"
#include "image/ImageCache.h"
#include "tests/support/TempFolder.h"
#include "tests/support/WindowApp.h"

#include <malloc.h>

#include <string>
#include <vector>

#include <wx/app.h>
#include <wx/arrstr.h>
#include <wx/grid.h>
#include <wx/modalhook.h>

using namespace LS::Bench;

namespace {

/// Doesn't save what an earlier round merged.
class AnswerNo : public wxModalDialogHook {
public:
    AnswerNo() { Register(); }
    AnswerNo(const AnswerNo&) = delete;
    AnswerNo& operator=(const AnswerNo&) = delete;
    ~AnswerNo() override { Unregister(); }

protected:
    int Enter(wxDialog*) override { return wxID_NO; }
};

class Window {
public:
    Window() : m_frame(new LumiStrandHDRFrm(nullptr, wxID_ANY, "Whole run")) { m_frame->Show(); }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window()
    {
        m_frame->Destroy();
        wxYield();
    }

    /// From photographs to the saved picture, as after a start: nothing is decoded yet.
    void Run(const std::vector<std::string>& vsPhotographs, const std::string& sPicture) const
    {
        ImageCache::DestroyInstance();
        ::malloc_trim(0);
        wxArrayString paths;
        for (const std::string& sPhotograph : vsPhotographs)
            paths.Add(wxString::FromUTF8(sPhotograph));
        m_frame->AddFiles(paths);
        SetShutters();
        wxCommandEvent create(wxEVT_MENU, ID_CREATE_HDR);
        m_frame->GetEventHandler()->ProcessEvent(create);
        JobProgress job(m_frame, "Save Image");
        Require(SaveHDRFile(sPicture.c_str(), HDR_OPENEXR, &job.Setter()), "not saved");
    }

private:
    void SetShutters() const
    {
        auto& grid = dynamic_cast<wxGrid&>(*wxWindow::FindWindowByName("grid", m_frame));
        const std::vector<float> vfShutters = Photographs::Shutters();
        for (int nRow = 0; nRow < static_cast<int>(vfShutters.size()); ++nRow) {
            SetNumberCell(grid, nRow, COL_SHUTTER, vfShutters[static_cast<std::size_t>(nRow)]);
            wxGridEvent changed(grid.GetId(), wxEVT_GRID_CELL_CHANGED, &grid, nRow, COL_SHUTTER);
            grid.GetEventHandler()->ProcessEvent(changed);
        }
    }

    LumiStrandHDRFrm* m_frame;
};

void MeasureWindow(RatioTable& table)
{
    const LS::Tests::TempFolder folder;
    RedirectCacheFolder(folder.WideFile("hdrcache"));
    const HeadlessRun headless(LS_HEADLESS_PROGRAM, folder.Path());
    const std::string sPicture = folder.File("window.exr");
    const Window window;
    const AnswerNo no;
    table.Ratio(
        "5 JPEG of 24 MP to OpenEXR in the window: beside the headless run", 1.05,
        [&] { window.Run(headless.Photographs(), sPicture); }, headless);
}

} // namespace

int main(int argc, char** argv)
{
    LS::Util::KeepFreedImages(); // as the program does
    return LS::Tests::RunWithWindows(argc, argv, [=] { return PrintRows(argc, argv, MeasureWindow); });
}
