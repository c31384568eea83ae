// The sample series against the truth that it was rendered from: the whole way from JPEG to radiance.
#include "samples/SampleSeries.h"
#include "Util/Paths.h"
#include "Util/RegularFile.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "engine/OwnedCurves.h"
#include "engine/ResponseCurve.h"
#include "image/ImageDecoder.h"
#include "image/SourceCache.h"
#include "samples/CameraResponse.h"
#include "samples/SceneRadiance.h"
#include "tests/support/TempFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <wx/init.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace LS::Tests {

namespace {

using namespace Samples;

constexpr int STEP = 20; // every 20th pixel in both directions is enough for a median

/// A sampled pixel and its true radiance.
struct Sample {
    std::size_t nPixel; ///< counted row by row
    std::array<double, 3> radiance;
};

/// Rendered once for all tests.
const std::vector<Sample>& Samples()
{
    static const std::vector<Sample> samples = [] {
        std::vector<Sample> vSamples;
        for (int y = 0; y < kSampleHeight; y += STEP)
            for (int x = 0; x < kSampleWidth; x += STEP) {
                const Radiance radiance = TrueRadiance(x, y);
                vSamples.push_back({static_cast<std::size_t>(y) * kSampleWidth + static_cast<std::size_t>(x),
                                    {radiance.r, radiance.g, radiance.b}});
            }
        return vSamples;
    }();
    return samples;
}

double Median(std::vector<double> vdValues)
{
    const auto middle = vdValues.begin() + static_cast<std::ptrdiff_t>(vdValues.size() / 2);
    std::nth_element(vdValues.begin(), middle, vdValues.end());
    return *middle;
}

/// The series as source cache files, made once for all tests.
class SampleSeries : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        s_pLibrary = new wxInitializer;
        RegisterImageHandlers();
        s_pFolder = new TempFolder;
        for (const SampleExposure& frame : kSampleExposures) {
            const DecodedImage decoded = DecodeImage(std::string(LS_SAMPLES_FOLDER "/") + frame.fileName);
            ASSERT_TRUE(decoded.image.IsOk()) << decoded.sReason;
            ASSERT_TRUE(WriteSourceCacheFile(decoded.image, s_pFolder->File(frame.fileName), {}));
        }
    }

    static void TearDownTestSuite()
    {
        delete s_pFolder;
        delete s_pLibrary;
    }

    ~SampleSeries() override { ResetWorkspace(); }

    SampleSeries()
    {
        for (const SampleExposure& frame : kSampleExposures) {
            vsFiles.push_back(s_pFolder->WideFile(frame.fileName));
            vfShutters.push_back(static_cast<float>(frame.Seconds()));
        }
    }

    std::vector<std::wstring> vsFiles;
    std::vector<float> vfShutters;
    const std::vector<float> vfStops = std::vector<float>(kSampleExposures.size(), kSampleFNumber);
    const std::vector<float> vfThrees = std::vector<float>(kSampleExposures.size(), 3);

    /// Merges, and gives the ratio of merged to true values of the sampled pixels, channel by channel.
    std::array<std::vector<double>, 3> MergedOverTruth(OwnedCurves& curves)
    {
        std::array<std::vector<double>, 3> avdRatios;
        EXPECT_TRUE(MergeExposures(vsFiles, kSampleWidth, kSampleHeight, vfShutters, vfStops, vfThrees,
                                   vfThrees, curves.Get(), nullptr, &Workspace()));
        curves.Release();
        const Util::RegularFile floats("test", Util::NarrowPath(Workspace().sHDRFile), O_RDONLY);
        for (const Sample& sample : Samples()) {
            std::array<float, 3> pixel{};
            EXPECT_TRUE(floats.Read(sample.nPixel * sizeof pixel, pixel.data(), sizeof pixel));
            for (std::size_t c = 0; c < 3; ++c)
                avdRatios[c].push_back(static_cast<double>(pixel[c]) / sample.radiance[c]);
        }
        return avdRatios;
    }

    static inline wxInitializer* s_pLibrary = nullptr;
    static inline TempFolder* s_pFolder = nullptr;
};

} // namespace

TEST_F(SampleSeries, MergesToTheTrueRadianceWithTheTrueCurves)
{
    OwnedCurves curves;
    for (const Channel channel : kChannels) {
        const std::array<double, 256> curve = TrueCurve(channel);
        curves.Get().push_back(new float[CURVE_ENTRIES]);
        std::transform(curve.begin(), curve.end(), curves.Get().back(),
                       [](double d) { return static_cast<float>(d); });
    }
    // What an exposure means in the merge's units: E = 100 t / (12.07488 N^2).
    const double dUnits = kSensorConstant * 12.07488 / 100;
    const auto avdRatios = MergedOverTruth(curves);
    for (std::size_t c = 0; c < 3; ++c) {
        const double dMedian = Median(avdRatios[c]);
        EXPECT_NEAR(1, dMedian / dUnits, 0.01);
        std::vector<double> vdSpread;
        for (const double d : avdRatios[c])
            vdSpread.push_back(std::fabs(d / dMedian - 1));
        EXPECT_LT(Median(vdSpread), 0.05); // noise and JPEG of single pixels; 0.042 in the worst channel
    }
}

TEST_F(SampleSeries, RecoversTheCamera)
{
    OwnedCurves curves;
    ASSERT_TRUE(CalculateCurves(vsFiles, kSampleWidth, kSampleHeight, vfShutters, vfStops, vfThrees, vfThrees,
                                curves.Get(), nullptr));
    for (std::size_t c = 0; c < 3; ++c) {
        const std::array<double, 256> truth = TrueCurve(kChannels[c]);
        constexpr double VALUES = 206;
        double dSum = 0, dSquares = 0;
        for (std::size_t z = 30; z <= 235; ++z) {
            const double d = std::log(static_cast<double>(curves.Get()[c][z]) / truth[z]);
            dSum += d;
            dSquares += d * d;
        }
        EXPECT_LT(std::sqrt(dSquares / VALUES - dSum / VALUES * dSum / VALUES), 0.01); // 0.0052 at worst
    }
}

} // namespace LS::Tests
