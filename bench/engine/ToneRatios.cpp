// Tone mapping against its targets.
#include "bench/engine/ToneScene.h"
#include "bench/support/Ratios.h"
#include "engine/TMORoutine.h"

namespace {

constexpr float EXPOSURE = 0.5F, GAMMA = 2.2F;

} // namespace

int main(int argc, char** argv)
{
    LS::Bench::RatioTable table(argc, argv);
    constexpr std::int32_t WIDTH = 1500, HEIGHT = 1000;
    const std::vector<float> vfPixels = LS::Bench::ToneScene(WIDTH, HEIGHT);
    table.Time("tone mapping: slider move, 1.5 MP", 30,
               [&] { ToneMapScaledImage(vfPixels.data(), WIDTH, HEIGHT, EXPOSURE, GAMMA, nullptr); });
    return 0;
}
