// The merge: its row kernel alone, and with its files.
#include "engine/ExposureMerge.h"

#include "Util/Paths.h"
#include "engine/CacheFolder.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "engine/OwnedCurves.h"
#include "tests/support/TempFolder.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::int32_t WIDTH = 3000, HEIGHT = 2000;

/// A row as a photograph has it: neighbours are alike, and all values occur.
std::vector<unsigned char> PhotographicRow(std::size_t nWidth, unsigned nSeed)
{
    std::mt19937 random(nSeed);
    std::vector<unsigned char> row(4 * nWidth);
    int nLevel = 128;
    for (std::size_t i = 0; i < row.size(); ++i) {
        nLevel = std::clamp(nLevel + static_cast<int>(random() % 13) - 6, 0, 255);
        row[i] = static_cast<unsigned char>(nLevel);
    }
    return row;
}

std::vector<float> Shutters(std::size_t nImages)
{
    std::vector<float> vfShutters;
    for (std::size_t i = 0; i < nImages; ++i)
        vfShutters.push_back(0.001F * static_cast<float>(1 << (2 * i)));
    return vfShutters;
}

void CountPixels(benchmark::State& state, std::int64_t nPixels)
{
    state.counters["MP/s"] = benchmark::Counter(static_cast<double>(nPixels * state.iterations()) / 1e6,
                                                benchmark::Counter::kIsRate);
}

void BM_MergeRow(benchmark::State& state)
{
    const auto nImages = static_cast<std::size_t>(state.range(0));
    std::vector<std::vector<unsigned char>> vRows;
    std::vector<const unsigned char*> vPointers;
    vRows.reserve(nImages);
    vPointers.reserve(nImages);
    for (unsigned i = 0; i < nImages; ++i)
        vRows.push_back(PhotographicRow(WIDTH, i));
    for (const auto& row : vRows)
        vPointers.push_back(row.data());
    OwnedCurves curves;
    LoadCurves(nullptr, curves.Get());
    std::vector<float> vfExposures, vfWeights;
    ExposureList(Shutters(nImages), std::vector<float>(nImages, 8), vfExposures);
    BuildWeightTable(vfWeights);
    std::int32_t nLow = 0, nHigh = 0;
    FindWeightRange(vfWeights, &nLow, &nHigh);

    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(
            MergeRow(vPointers, WIDTH, 3, vfExposures, curves.Get(), vfWeights, nLow, nHigh));
    CountPixels(state, WIDTH);
}
BENCHMARK(BM_MergeRow)->Arg(1)->Arg(3)->Arg(5)->Arg(9);

/// Source cache files of one series, in the process's cache folder.
std::vector<std::wstring> WriteSources(std::size_t nImages)
{
    CreateCacheFolder();
    std::vector<std::wstring> vsFiles;
    for (unsigned i = 0; i < nImages; ++i) {
        vsFiles.push_back(LS::Util::JoinPath(CacheFolder(), L"source" + std::to_wstring(i) + L".tmp"));
        std::ofstream file(LS::Util::NarrowPath(vsFiles.back()), std::ios::binary);
        const std::vector<unsigned char> row = PhotographicRow(WIDTH, i);
        for (std::int32_t y = 0; y < HEIGHT; ++y)
            file.write(reinterpret_cast<const char*>(row.data()), static_cast<std::streamsize>(row.size()));
    }
    return vsFiles;
}

void BM_MergeExposures(benchmark::State& state)
{
    const auto nImages = static_cast<std::size_t>(state.range(0));
    const std::vector<std::wstring> vsFiles = WriteSources(nImages);
    const std::vector<float> vfShutters = Shutters(nImages), vfStops(nImages, 8), vfRest(nImages, 0);
    for ([[maybe_unused]] auto _ : state) {
        ResetWorkspace();
        OwnedCurves curves;
        LoadCurves(nullptr, curves.Get());
        if (!MergeExposures(vsFiles, WIDTH, HEIGHT, vfShutters, vfStops, vfRest, vfRest, curves.Get(),
                            nullptr, &Workspace())) {
            state.SkipWithError("the merge failed");
            break;
        }
        curves.Release();
    }
    CountPixels(state, std::int64_t{WIDTH} * HEIGHT);
    ResetWorkspace();
    DeleteCacheFiles(CacheFolder());
}
BENCHMARK(BM_MergeExposures)->Arg(3)->Arg(5)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    static const LS::Tests::TempFolder folder;
    RedirectCacheFolder(folder.WideFile("hdrcache"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
