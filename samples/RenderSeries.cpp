// render_samples OUTDIR: computes the sample series and writes it as JPEG files with Exif data.
#include "samples/CameraResponse.h"
#include "samples/PhotoFile.h"
#include "samples/SampleSeries.h"
#include "samples/SceneRadiance.h"
#include "samples/SensorNoise.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <exception>
#include <thread>
#include <vector>

namespace LS::Samples {
namespace {

std::vector<Radiance> RenderScene()
{
    std::vector<Radiance> scene(static_cast<std::size_t>(kSampleWidth) * kSampleHeight);
    std::atomic<int> nextRow = 0;
    const auto work = [&] {
        for (int y = nextRow++; y < kSampleHeight; y = nextRow++)
            for (int x = 0; x < kSampleWidth; ++x)
                scene[static_cast<std::size_t>(y) * kSampleWidth + static_cast<std::size_t>(x)] =
                    TrueRadiance(x, y);
    };
    std::vector<std::jthread> workers;
    for (unsigned i = 0; i < std::max(1U, std::thread::hardware_concurrency()); ++i)
        workers.emplace_back(work);
    workers.clear(); // joins
    return scene;
}

unsigned char Develop(double radiance, int x, int y, int frame, Channel channel)
{
    const double exposure = SensorExposure(radiance, kSampleExposures[static_cast<std::size_t>(frame)]);
    const double read = NoisyExposure(exposure, x, y, frame, channel);
    return static_cast<unsigned char>(std::lround(Response(channel, read)));
}

Photo Photograph(const std::vector<Radiance>& scene, int frame)
{
    Photo photo{kSampleWidth, kSampleHeight, {}};
    photo.pixels.reserve(scene.size() * 3);
    for (int y = 0; y < kSampleHeight; ++y) {
        for (int x = 0; x < kSampleWidth; ++x) {
            const Radiance& r =
                scene[static_cast<std::size_t>(y) * kSampleWidth + static_cast<std::size_t>(x)];
            photo.pixels.push_back(Develop(r.r, x, y, frame, Channel::Red));
            photo.pixels.push_back(Develop(r.g, x, y, frame, Channel::Green));
            photo.pixels.push_back(Develop(r.b, x, y, frame, Channel::Blue));
        }
    }
    return photo;
}

void RenderSeries(const std::filesystem::path& folder)
{
    std::filesystem::create_directories(folder);
    const auto scene = RenderScene();
    for (int frame = 0; frame < static_cast<int>(kSampleExposures.size()); ++frame) {
        const SampleExposure& exposure = kSampleExposures[static_cast<std::size_t>(frame)];
        WritePhoto(folder / exposure.fileName, Photograph(scene, frame), exposure, frame);
        std::printf("%s  %u/%u s\n", exposure.fileName, exposure.numerator, exposure.denominator);
    }
}

} // namespace
} // namespace LS::Samples

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: render_samples OUTDIR\n");
        return 2;
    }
    try {
        LS::Samples::RenderSeries(argv[1]);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "render_samples: %s\n", error.what());
        return 1;
    }
    return 0;
}
