// How fast radiance becomes bytes: the three roads, and one move of a slider.
#include "Util/Paths.h"
#include "bench/engine/ToneScene.h"
#include "engine/CacheFolder.h"
#include "engine/ProgbarSetter.h"
#include "engine/TMORoutine.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

constexpr float GAMMA = 2.2F;

std::wstring SceneFile(std::int32_t nWidth, std::int32_t nHeight)
{
    const std::vector<float> vfPixels = LS::Bench::ToneScene(nWidth, nHeight);
    std::wstring sFile = CacheFolder() + L"scene.tmp";
    std::ofstream file(LS::Util::NarrowPath(sFile), std::ios::binary);
    file.write(reinterpret_cast<const char*>(vfPixels.data()),
               static_cast<std::streamsize>(vfPixels.size() * sizeof(float)));
    return sFile;
}

void CountPixels(benchmark::State& state)
{
    state.counters["Mpixel/s"] =
        benchmark::Counter(static_cast<double>(state.iterations() * state.range(0) * state.range(1)) / 1e6,
                           benchmark::Counter::kIsRate);
}

/// A slider move on a preview of 1.5 megapixels; also the road of pictures in memory.
void SliderMove(benchmark::State& state)
{
    const auto nWidth = static_cast<std::int32_t>(state.range(0));
    const auto nHeight = static_cast<std::int32_t>(state.range(1));
    const std::vector<float> vfPixels = LS::Bench::ToneScene(nWidth, nHeight);
    while (state.KeepRunning())
        benchmark::DoNotOptimize(ToneMapScaledImage(vfPixels.data(), nWidth, nHeight, 0.5F, GAMMA, nullptr));
    CountPixels(state);
}
BENCHMARK(SliderMove)->Args({1500, 1000})->Unit(benchmark::kMillisecond);

template <auto ROAD> void CacheRoad(benchmark::State& state)
{
    const auto nWidth = static_cast<std::int32_t>(state.range(0));
    const auto nHeight = static_cast<std::int32_t>(state.range(1));
    const std::wstring sFile = SceneFile(nWidth, nHeight);
    while (state.KeepRunning())
        benchmark::DoNotOptimize(ROAD(sFile, nWidth, nHeight, 0.5F, GAMMA, nullptr));
    CountPixels(state);
}
BENCHMARK(CacheRoad<ToneMapCacheInMemory>)->Args({1500, 1000})->Unit(benchmark::kMillisecond);
BENCHMARK(CacheRoad<ToneMapCacheByRows>)->Args({1500, 1000})->Unit(benchmark::kMillisecond);
BENCHMARK(CacheRoad<ToneMapCacheByRows>)->Args({3000, 2000})->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("lumistrand-bench-" + std::to_string(getpid()));
    std::filesystem::create_directory(folder);
    RedirectCacheFolder(LS::Util::WidePath(folder.native()));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::filesystem::remove_all(folder);
    return 0;
}
