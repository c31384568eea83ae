// Megapixels per second of the three writers, file system included.
#include "HDRFile/FloatTiff.h"
#include "HDRFile/OpenExr.h"
#include "HDRFile/Radiance.h"
#include "tests/support/TempFolder.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::int32_t WIDTH = 3000;
constexpr std::int32_t HEIGHT = 2000;

/// A float cache file of 6 megapixels: smooth shading over six stops with the noise of a sensor, and a
/// blown-out area that is flat.
struct CacheFile {
    CacheFile()
    {
        std::mt19937 random(1);
        std::normal_distribution<float> noise(1.0F, 0.02F);
        std::vector<float> vfPixels;
        vfPixels.reserve(3UL * WIDTH * HEIGHT);
        for (int y = 0; y < HEIGHT; ++y)
            for (int x = 0; x < WIDTH; ++x) {
                const auto fStops = static_cast<float>(3 * std::sin(x * 0.003) * std::cos(y * 0.002));
                const bool bBlownOut = fStops > 2.7F;
                for (const float fTint : {1.0F, 0.8F, 0.6F})
                    vfPixels.push_back(bBlownOut ? 8000.0F
                                                 : 1000 * fTint * std::exp2(fStops) * noise(random));
            }
        LS::Tests::WriteElements(sPath, vfPixels);
    }

    LS::Tests::TempFolder folder;
    std::string sPath = folder.File("cache.tmp");
};

const CacheFile& Cache()
{
    static const CacheFile cache;
    return cache;
}

template <auto write> void Save(benchmark::State& state)
{
    const CacheFile& cache = Cache();
    const std::string sPicture = cache.folder.File("picture");
    for ([[maybe_unused]] auto _ : state)
        if (!write(cache.sPath.c_str(), sPicture.c_str(), WIDTH, HEIGHT, nullptr))
            state.SkipWithError("not saved");
    state.counters["MP/s"] = benchmark::Counter(
        WIDTH * HEIGHT / 1e6 * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

} // namespace

BENCHMARK(Save<WriteOpenExrFile>)->Name("OpenExr")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(Save<WriteRadianceFile>)->Name("Radiance")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(Save<WriteFloatTiffFile>)->Name("FloatTiff")->Unit(benchmark::kMillisecond)->UseRealTime();

BENCHMARK_MAIN();
