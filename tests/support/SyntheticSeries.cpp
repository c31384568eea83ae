// Renders scenes and photographs them with a known response.
#include "tests/support/SyntheticSeries.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>

namespace LS::Tests {

namespace {

constexpr double STOP = 8.0;
constexpr std::array<double, 3> TINT = {1.0, 0.9, 0.75};

/// Five decades around 1, in natural logarithms: a slow wave, patches of constant radiance, fine texture.
double LogRadiance(double x, double y)
{
    const double dRange = 2.5 * std::numbers::ln10;
    const double dWave = dRange * std::sin(1.7 * x + 0.9 * y) * std::cos(2.3 * y - 0.6 * x);
    if (y < 0.4)
        return dWave;
    if (y < 0.75) // patches
        return dRange * (2 * (std::floor(x * 8) + 8 * std::fmod(std::floor(y * 16), 4)) / 31.0 - 1);
    return dWave + 0.3 * std::sin(140 * x) * std::sin(110 * y);
}

} // namespace

unsigned char FilmResponse::Value(double dExposure) const
{
    const double dValue = 255.0 / (1.0 + std::pow(dExposure / dMiddle, -dContrast));
    return static_cast<unsigned char>(std::lround(dValue));
}

double FilmResponse::LogExposure(double dValue) const
{
    return std::log(dMiddle) + std::log(dValue / (255.0 - dValue)) / dContrast;
}

SyntheticScene RenderScene(std::int32_t nWidth, std::int32_t nHeight)
{
    SyntheticScene scene{nWidth, nHeight, {}};
    for (std::int32_t y = 0; y < nHeight; ++y)
        for (std::int32_t x = 0; x < nWidth; ++x)
            for (const double dTint : TINT)
                scene.vdRadiances.push_back(dTint * std::exp(LogRadiance(static_cast<double>(x) / nWidth,
                                                                         static_cast<double>(y) / nHeight)));
    return scene;
}

SyntheticSeries Photograph(const TempFolder& folder, const SyntheticScene& scene,
                           const FilmResponse& response, const std::vector<double>& vdShutters)
{
    SyntheticSeries series{scene.nWidth, scene.nHeight, {}, {}, {}, {}, {}};
    for (const double dShutter : vdShutters) {
        Bytes pixels;
        for (std::size_t n = 0; n < scene.vdRadiances.size(); ++n) {
            if (n % 3 == 0)
                pixels.push_back(0);
            pixels.push_back(response.Value(scene.vdRadiances[n] * dShutter));
        }
        const std::string sName = "source" + std::to_string(series.vsFiles.size()) + ".tmp";
        WriteElements(folder.File(sName), pixels);
        series.vsFiles.push_back(folder.WideFile(sName));
        series.vfShutters.push_back(static_cast<float>(dShutter));
    }
    series.vfStops.assign(vdShutters.size(), static_cast<float>(STOP));
    series.vfGains.assign(vdShutters.size(), 3.0F);
    series.vfNDs.assign(vdShutters.size(), 0.0F);
    return series;
}

void WriteSource(const std::string& sPath, const std::array<Bytes, 3>& planes)
{
    Bytes pixels;
    for (std::size_t p = 0; p < planes[0].size(); ++p)
        pixels.insert(pixels.end(), {0, planes[0][p], planes[1][p], planes[2][p]});
    WriteElements(sPath, pixels);
}

std::vector<double> Bracket(int nImages, double dFactor)
{
    std::vector<double> vdShutters(static_cast<std::size_t>(nImages));
    double dSteps = -(nImages - 1) / 2.0;
    for (double& dShutter : vdShutters)
        dShutter = std::pow(dFactor, dSteps++);
    return vdShutters;
}

SyntheticSeries Reordered(const SyntheticSeries& series, const std::vector<std::size_t>& vnOrder)
{
    SyntheticSeries result = series;
    const auto reorder = [&vnOrder](auto& values) {
        const auto all = std::exchange(values, {});
        for (const std::size_t n : vnOrder)
            values.push_back(all[n]);
    };
    reorder(result.vsFiles);
    for (auto* const values : {&result.vfShutters, &result.vfStops, &result.vfGains, &result.vfNDs})
        reorder(*values);
    return result;
}

} // namespace LS::Tests
