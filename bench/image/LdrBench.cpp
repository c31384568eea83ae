// Megapixels per second of the 8-bit saves, file and synchronisation included.
#include "image/LdrSave.h"
#include "tests/support/TempFolder.h"

#include <benchmark/benchmark.h>
#include <wx/image.h>

namespace {

constexpr int WIDTH = 1500, HEIGHT = 1000;

/// Gradients with noise of one step, as a photograph has: neither flat nor impossible to compress.
wxImage Picture()
{
    wxImage image(WIDTH, HEIGHT);
    unsigned nNoise = 1;
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 0; x < WIDTH; ++x) {
            nNoise = nNoise * 1664525 + 1013904223;
            const auto nStep = static_cast<int>(nNoise >> 31);
            image.SetRGB(x, y, static_cast<unsigned char>(x / 6 + nStep),
                         static_cast<unsigned char>(y / 4 + nStep), static_cast<unsigned char>((x + y) / 10));
        }
    return image;
}

void BM_SaveLdr(benchmark::State& state, LdrFormat format, unsigned nCompression)
{
    wxImage image = Picture();
    const LS::Tests::TempFolder folder;
    LdrOptions options;
    options.nCompression = nCompression;
    for ([[maybe_unused]] auto _ : state)
        if (SaveLdr(image, folder.File("picture"), format, options) != LdrOutcome::Saved)
            state.SkipWithError("not saved");
    state.counters["Mpixel/s"] =
        benchmark::Counter(WIDTH * HEIGHT / 1e6, benchmark::Counter::kIsIterationInvariantRate);
}

} // namespace

BENCHMARK_CAPTURE(BM_SaveLdr, jpeg, LdrFormat::Jpeg, 0U)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SaveLdr, png, LdrFormat::Png, 0U)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SaveLdr, tiff_none, LdrFormat::Tiff, 0U)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SaveLdr, tiff_deflate, LdrFormat::Tiff, 1U)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SaveLdr, tiff_packbits, LdrFormat::Tiff, 2U)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SaveLdr, bmp, LdrFormat::Bmp, 0U)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SaveLdr, targa, LdrFormat::Targa, 0U)->UseRealTime()->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
