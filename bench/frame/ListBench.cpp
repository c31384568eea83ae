// Long lists and large previews in the main window.
#include "Util/OpenFiles.h"
#include "Widgets/lsRadioButton.h"
#include "engine/HDRWorkspace.h"
#include "frame/LumiStrandHDRFrm.h"
#include "frame/MergeInput.h"
#include "image/ImageCache.h"
#include "tests/cli/Photographs.h"
#include "tests/support/TempFolder.h"
#include "tests/support/WindowApp.h"

#include <benchmark/benchmark.h>
#include <wx/app.h>
#include <wx/grid.h>
#include <wx/slider.h>

#include <filesystem>

namespace {

using LS::Tests::TempFolder;

void Settle()
{
    for (int i = 0; i < 20; ++i) {
        wxYield();
        wxMilliSleep(5);
    }
}

/// The window on show, without a series.
class Window {
public:
    Window() : m_frame(new LumiStrandHDRFrm(nullptr, wxID_ANY, "Lists"))
    {
        m_frame->Show();
        Settle();
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window()
    {
        m_frame->Destroy();
        Settle();
        ImageCache::DestroyInstance();
    }

    LumiStrandHDRFrm* operator->() const { return m_frame; }
    wxGrid& Grid() const { return dynamic_cast<wxGrid&>(*wxWindow::FindWindowByName("grid", m_frame)); }
    void Command(int nId) const
    {
        wxCommandEvent event(wxEVT_MENU, nId);
        m_frame->GetEventHandler()->ProcessEvent(event);
    }

private:
    LumiStrandHDRFrm* m_frame;
};

/// Photographs of 64 x 48 pixels, each exposure different, as many as asked for.
wxArrayString Photographs(const TempFolder& folder, int nCount)
{
    wxArrayString paths;
    for (int i = 0; i < nCount; ++i) {
        const std::string sPath = folder.File(std::to_string(100000 + i) + ".jpg");
        LS::Tests::WritePhotograph(sPath, {0.5, "1/" + std::to_string(i + 1), "8/1", 64, 48});
        paths.Add(sPath);
    }
    return paths;
}

/// The same few photographs under many names.
wxArrayString Links(const TempFolder& folder, int nCount)
{
    const wxArrayString originals = Photographs(folder, 5);
    wxArrayString paths;
    for (int i = 0; i < nCount; ++i) {
        const std::string sPath = folder.File("link" + std::to_string(i) + ".jpg");
        std::filesystem::create_hard_link(originals[static_cast<std::size_t>(i) % 5].utf8_string(), sPath);
        paths.Add(sPath);
    }
    return paths;
}

void BM_AddFiles(benchmark::State& state)
{
    const TempFolder folder;
    const wxArrayString paths = Links(folder, static_cast<int>(state.range(0)));
    while (state.KeepRunning()) {
        const Window window;
        window->AddFiles(paths);
        wxYield();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_AddFiles)->Arg(1000)->Arg(10000)->Iterations(1)->Unit(benchmark::kMillisecond);

/// Every other row goes up by one.
void BM_MoveUp(benchmark::State& state)
{
    const TempFolder folder;
    const Window window;
    const auto nRows = static_cast<int>(state.range(0));
    window->AddFiles(Links(folder, nRows));
    while (state.KeepRunning()) {
        state.PauseTiming();
        window.Grid().ClearSelection();
        for (int nRow = 1; nRow < nRows; nRow += 2)
            window.Grid().SelectRow(nRow, true);
        state.ResumeTiming();
        wxCommandEvent press(lsEVT_RADIOBUTTON_CLICKED, wxID_UP);
        window->FindWindow(wxID_UP)->GetEventHandler()->ProcessEvent(press);
    }
}
BENCHMARK(BM_MoveUp)->Arg(1000)->Iterations(1)->Unit(benchmark::kMillisecond);

/// What Create HDR Image looks at before it converts.
void BM_Checks(benchmark::State& state)
{
    SourceRecords records;
    for (int i = 0; i < state.range(0); ++i) {
        records.emplace_back(new lsImage("photograph", 4000, 3000));
        records.back()->SetExposureTime(static_cast<float>(i));
    }
    while (state.KeepRunning()) {
        const auto exposures = TickedExposures(records);
        const auto sizes = TickedSizes(records);
        benchmark::DoNotOptimize(FindEqualExposures(exposures));
        benchmark::DoNotOptimize(FindDifferentSizes(sizes));
    }
}
BENCHMARK(BM_Checks)->Arg(1000)->Unit(benchmark::kMillisecond);

void BM_CreateHDR(benchmark::State& state)
{
    const TempFolder folder;
    const wxArrayString paths = Photographs(folder, static_cast<int>(state.range(0)));
    while (state.KeepRunning()) {
        const Window window;
        window->AddFiles(paths);
        window.Command(ID_CREATE_HDR);
        if (Workspace().sHDRFile.empty())
            state.SkipWithError("nothing was merged");
    }
}
BENCHMARK(BM_CreateHDR)->Arg(3)->Arg(1000)->Iterations(1)->Unit(benchmark::kMillisecond);

/// The end of a drag on the largest preview there is.
void BM_SliderMove(benchmark::State& state)
{
    const TempFolder folder;
    wxArrayString paths;
    for (const auto& sPath : LS::Tests::WriteSeries(folder.Path(), 1500, 999))
        paths.Add(sPath);
    const Window window;
    window->AddFiles(paths);
    window.Command(ID_CREATE_HDR);
    auto& slider = dynamic_cast<wxSlider&>(*window->FindWindow(ID_EXPOSURE));
    wxScrollEvent release(wxEVT_SCROLL_THUMBRELEASE, ID_EXPOSURE);
    release.SetEventObject(&slider);
    int nPosition = 0;
    while (state.KeepRunning()) {
        slider.SetValue(nPosition++ % 50);
        slider.GetEventHandler()->ProcessEvent(release);
    }
}
BENCHMARK(BM_SliderMove)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    LS::Util::AllowManyOpenFiles();
    return LS::Tests::RunWithWindows(argc, argv, [] {
        benchmark::RunSpecifiedBenchmarks();
        return 0;
    });
}
