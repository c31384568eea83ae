// Response recovery by number of images, with its steps apart.
#include "Util/Paths.h"
#include "engine/CacheFolder.h"
#include "engine/HDRRoutine.h"
#include "engine/RecoveryReport.h"
#include "tests/support/SyntheticSeries.h"
#include "tests/support/TempFolder.h"

#include <benchmark/benchmark.h>

namespace {

void RecoverCurves(benchmark::State& state)
{
    const LS::Tests::TempFolder folder;
    const auto series =
        LS::Tests::Photograph(folder, LS::Tests::RenderScene(450, 300), LS::Tests::FilmResponse{},
                              LS::Tests::Bracket(static_cast<int>(state.range(0)), 2.5));
    RecoveryReport::Channel sum;
    while (state.KeepRunning()) {
        RecoveryReport report;
        std::vector<float*> vafCurves;
        if (!CalculateCurves(series.vsFiles, series.nWidth, series.nHeight, series.vfShutters, series.vfStops,
                             series.vfGains, series.vfNDs, vafCurves, nullptr, &report))
            state.SkipWithError("no curves");
        for (const float* pCurve : vafCurves)
            delete[] pCurve;
        for (const RecoveryReport::Channel& channel : report.channels) {
            sum.dStatisticsSeconds += channel.dStatisticsSeconds;
            sum.dSelectionSeconds += channel.dSelectionSeconds;
            sum.dFirstSolveSeconds += channel.dFirstSolveSeconds;
            sum.dSecondSolveSeconds += channel.dSecondSolveSeconds;
        }
    }
    const auto average = [](double dSeconds) {
        return benchmark::Counter(1000 * dSeconds, benchmark::Counter::kAvgIterations);
    };
    state.counters["statistics_ms"] = average(sum.dStatisticsSeconds);
    state.counters["selection_ms"] = average(sum.dSelectionSeconds);
    state.counters["first_solve_ms"] = average(sum.dFirstSolveSeconds);
    state.counters["second_solve_ms"] = average(sum.dSecondSolveSeconds);
}

BENCHMARK(RecoverCurves)->Arg(3)->Arg(5)->Arg(7)->Arg(9)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    static const LS::Tests::TempFolder home; // outlives the workspace, which empties the cache folder
    RedirectCacheFolder(home.WideFile("hdrcache"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
