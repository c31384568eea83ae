// How fast radiance becomes bytes: the three roads, and one move of a slider.
#include "Util/Paths.h"
#include "engine/CacheFolder.h"
#include "engine/ProgbarSetter.h"
#include "engine/TMORoutine.h"

#include <benchmark/benchmark.h>

#include <cmath>
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

/// A scene with a soft gradient over three decades, some texture, and a few strong edges.
std::vector<float> Scene(std::int32_t nWidth, std::int32_t nHeight)
{
    std::vector<float> vfPixels;
    vfPixels.reserve(3 * static_cast<std::size_t>(nWidth) * static_cast<std::size_t>(nHeight));
    for (std::int32_t y = 0; y < nHeight; ++y)
        for (std::int32_t x = 0; x < nWidth; ++x) {
            const float fBase = std::pow(10.0F, 3.0F * static_cast<float>(y) / static_cast<float>(nHeight));
            const bool bLamp = x % 97 < 9 && y % 83 < 9;
            const float fTexture = 1.0F + 0.2F * static_cast<float>((x * 7 + y * 13) % 17) / 17.0F;
            const float fLight = (bLamp ? 50.0F : 1.0F) * fBase * fTexture;
            vfPixels.insert(vfPixels.end(), {fLight, 0.8F * fLight, 0.6F * fLight});
        }
    return vfPixels;
}

std::wstring SceneFile(std::int32_t nWidth, std::int32_t nHeight)
{
    const std::vector<float> vfPixels = Scene(nWidth, nHeight);
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
    const std::vector<float> vfPixels = Scene(nWidth, nHeight);
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
