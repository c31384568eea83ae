// From a photograph's file to its source cache file. Items are pixels.
#include "image/ImageDecoder.h"
#include "image/SourceCache.h"
#include "tests/support/TempFolder.h"

#include <benchmark/benchmark.h>
#include <wx/init.h>

#include <memory>

namespace {

constexpr int WIDTH = 4000;
constexpr int HEIGHT = 3000;

/// A photograph of 12 megapixels: a gradient with some grain, so that the coder has work to do.
std::string WritePhotograph(const LS::Tests::TempFolder& folder, wxBitmapType type)
{
    wxImage image(WIDTH, HEIGHT);
    unsigned nGrain = 1;
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 0; x < WIDTH; ++x) {
            nGrain = nGrain * 1664525 + 1013904223;
            const int nLight = (x + y) / 32 + static_cast<int>(nGrain >> 28);
            const auto nByte = static_cast<unsigned char>(nLight);
            image.SetRGB(x, y, nByte, nByte, static_cast<unsigned char>(255 - nLight));
        }
    std::string sPath = folder.File("photograph");
    image.SaveFile(wxString::FromUTF8(sPath), type);
    return sPath;
}

void Decode(benchmark::State& state, wxBitmapType type)
{
    const LS::Tests::TempFolder folder;
    const std::string sPath = WritePhotograph(folder, type);
    while (state.KeepRunning())
        benchmark::DoNotOptimize(DecodeImage(sPath).image.GetData());
    state.SetItemsProcessed(state.iterations() * WIDTH * HEIGHT);
}

void DecodeAndWrite(benchmark::State& state)
{
    const LS::Tests::TempFolder folder;
    const std::string sPath = WritePhotograph(folder, wxBITMAP_TYPE_JPEG);
    while (state.KeepRunning())
        if (!WriteSourceCacheFile(DecodeImage(sPath).image, folder.File("photograph.tmp"), {}))
            state.SkipWithError("not written");
    state.SetItemsProcessed(state.iterations() * WIDTH * HEIGHT);
}

// The last one takes the road through the child process.
BENCHMARK_CAPTURE(Decode, Jpeg, wxBITMAP_TYPE_JPEG)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(Decode, Bmp, wxBITMAP_TYPE_BMP)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(DecodeAndWrite)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    const wxInitializer library;
    if (!library.IsOk())
        return 1;
    RegisterImageHandlers();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
