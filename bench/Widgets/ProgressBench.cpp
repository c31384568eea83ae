// What the reports of a long job cost: the dialog's share of an update, beside a frame as full as the
// program's.
#include "Widgets/lsProgressDialog.h"
#include "tests/support/WindowApp.h"

#include <benchmark/benchmark.h>
#include <wx/app.h>
#include <wx/button.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/weakref.h>

using LS::Widgets::lsProgressDialog;

namespace {

constexpr int STYLE = wxPD_CAN_ABORT | wxPD_APP_MODAL | wxPD_AUTO_HIDE | wxPD_SMOOTH;
constexpr int TIMES = wxPD_ELAPSED_TIME | wxPD_ESTIMATED_TIME | wxPD_REMAINING_TIME;

/// A frame with some forty controls: each of them gets its share of idle time when events are let through.
wxFrame* FullFrame()
{
    auto* const frame = new wxFrame(nullptr, wxID_ANY, "Full");
    auto* const panel = new wxPanel(frame);
    auto* const grid = new wxGridSizer(4);
    for (int i = 0; i < 14; ++i) {
        grid->Add(new wxStaticText(panel, wxID_ANY, "Text"));
        grid->Add(new wxTextCtrl(panel, wxID_ANY));
        grid->Add(new wxButton(panel, wxID_ANY, "Button"));
    }
    panel->SetSizer(grid);
    frame->SetClientSize(600, 500);
    frame->Show();
    return frame;
}

void Settle()
{
    for (int i = 0; i < 40; ++i) {
        wxYield();
        wxMilliSleep(5);
    }
}

void BM_UpdateThatMoves(benchmark::State& state)
{
    lsProgressDialog dialog("Please wait a moment...", "Creating HDR Image", 100, wxTheApp->GetTopWindow(),
                            STYLE | static_cast<int>(state.range(0)));
    Settle();
    int nValue = 0;
    for ([[maybe_unused]] auto _ : state) {
        dialog.Update(nValue + 1);
        nValue = (nValue + 1) % 98;
    }
}
BENCHMARK(BM_UpdateThatMoves)->Arg(0)->Arg(TIMES)->Unit(benchmark::kMicrosecond);

void BM_UpdateThatChangesNothing(benchmark::State& state)
{
    lsProgressDialog dialog("Please wait a moment...", "Creating HDR Image", 100, wxTheApp->GetTopWindow(),
                            STYLE | static_cast<int>(state.range(0)));
    dialog.Update(45);
    Settle();
    for ([[maybe_unused]] auto _ : state)
        dialog.Update(45);
}
BENCHMARK(BM_UpdateThatChangesNothing)->Arg(0)->Arg(TIMES)->Unit(benchmark::kMicrosecond);

void BM_YieldAlone(benchmark::State& state)
{
    lsProgressDialog dialog("Please wait a moment...", "Creating HDR Image", 100, wxTheApp->GetTopWindow(),
                            STYLE);
    Settle();
    for ([[maybe_unused]] auto _ : state)
        wxYieldIfNeeded();
}
BENCHMARK(BM_YieldAlone)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    return LS::Tests::RunWithWindows(argc, argv, [] {
        wxTheApp->SetTopWindow(FullFrame());
        Settle();
        benchmark::RunSpecifiedBenchmarks();
        return 0;
    });
}
