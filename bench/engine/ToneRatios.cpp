// Tone mapping against its targets: the road by rows, and a move of a slider.
#include "Util/CpuFeatures.h"
#include "Util/Paths.h"
#include "bench/engine/ToneScene.h"
#include "bench/support/Ratios.h"
#include "engine/CacheFolder.h"
#include "engine/ProgbarSetter.h"
#include "engine/TMORoutine.h"
#include "tests/support/TempFolder.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using LS::Bench::RatioTable;
using LS::Util::InstructionSet;
using LS::Util::PixelBuffer;

constexpr float EXPOSURE = 0.5F, GAMMA = 2.2F;

/// Keeps kernels to an instruction set.
class Limited {
public:
    explicit Limited(InstructionSet limit) { LS::Util::LimitInstructionSet(limit); }
    Limited(const Limited&) = delete;
    Limited& operator=(const Limited&) = delete;
    ~Limited() { LS::Util::LimitInstructionSet(InstructionSet::Best); }
};

const struct {
    InstructionSet set;
    const char* szName;
    double dByRowsTarget;
} SETS[] = {{InstructionSet::Best, "best kernels", 0.45},
            {InstructionSet::Baseline, "baseline kernels", 0.60}};

// A slider must follow the hand. The plain twin takes 148 ms on a quiet machine; a ratio tells more on a busy
// one.
constexpr double SLIDER_MS = 30, SLIDER_RATIO = 0.20;

/// A ratio of different pictures would say nothing.
void RequireSame(const PixelBuffer& pFirst, const PixelBuffer& pSecond, std::size_t nBytes)
{
    if (pFirst && pSecond && std::equal(pFirst.get(), pFirst.get() + nBytes, pSecond.get()))
        return;
    std::fputs("The kernels' picture differs from the plain one.\n", stderr);
    std::exit(1);
}

template <typename Map>
void AddRatio(RatioTable& table, const std::string& sWhat, InstructionSet set, double dTarget,
              std::size_t nBytes, Map map)
{
    PixelBuffer pKernels, pPlain;
    const auto run = [&](PixelBuffer& pPixels, InstructionSet limit) {
        const Limited limited(limit);
        pPixels = map();
    };
    table.Ratio(
        sWhat, dTarget, [&] { run(pKernels, set); }, [&] { run(pPlain, InstructionSet::Plain); });
    if (table.Wants(sWhat))
        RequireSame(pKernels, pPlain, nBytes);
}

void AddByRows(RatioTable& table)
{
    constexpr std::int32_t WIDTH = 6000, HEIGHT = 4000;
    const std::wstring sFile = CacheFolder() + L"scene.tmp";
    CreateCacheFolder();
    LS::Tests::WriteElements(LS::Util::NarrowPath(sFile), LS::Bench::ToneScene(WIDTH, HEIGHT));
    for (const auto& set : SETS) {
        const std::string sWhat = std::string("tone mapping by rows, 24 MP, ") + set.szName + " / plain";
        AddRatio(table, sWhat, set.set, set.dByRowsTarget, std::size_t{3} * WIDTH * HEIGHT,
                 [&] { return ToneMapCacheByRows(sFile, WIDTH, HEIGHT, EXPOSURE, GAMMA, nullptr); });
    }
    DeleteCacheFiles(CacheFolder());
}

void AddSliderMove(RatioTable& table)
{
    constexpr std::int32_t WIDTH = 1500, HEIGHT = 1000;
    const std::vector<float> vfPixels = LS::Bench::ToneScene(WIDTH, HEIGHT);
    const auto map = [&] {
        return ToneMapScaledImage(vfPixels.data(), WIDTH, HEIGHT, EXPOSURE, GAMMA, nullptr);
    };
    for (const auto& set : SETS) {
        const std::string sWhat = std::string("slider move, 1.5 MP, ") + set.szName;
        if (set.set == InstructionSet::Best)
            AddRatio(table, sWhat + " / plain", set.set, SLIDER_RATIO, vfPixels.size(), map);
        const Limited limited(set.set);
        table.Time(sWhat, SLIDER_MS, [&] { map(); });
    }
}

} // namespace

int main(int argc, char** argv)
{
    static const LS::Tests::TempFolder folder; // outlives the workspace, which empties the cache folder
    RedirectCacheFolder(folder.WideFile("hdrcache"));
    RatioTable table(argc, argv);
    AddByRows(table);
    AddSliderMove(table);
    return 0;
}
