// Megapixels per second of the three writers, file system included.
#include "HDRFile/FloatTiff.h"
#include "HDRFile/OpenExr.h"
#include "HDRFile/Radiance.h"
#include "bench/HDRFile/SyntheticFloats.h"
#include "tests/support/TempFolder.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

namespace {

constexpr std::int32_t WIDTH = 3000;
constexpr std::int32_t HEIGHT = 2000;

/// A float cache file of 6 megapixels.
struct CacheFile {
    CacheFile() { LS::Tests::WriteElements(sPath, LS::Bench::SyntheticFloats(WIDTH, HEIGHT)); }

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
