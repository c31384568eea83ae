// What the kernels of tone mapping rest on, checked for every float: the bounds of their logarithms, and the
// table from channel values to bytes. Takes some minutes; with --sample only each 4099th group of
// floats, in a second.
#include "Util/CpuFeatures.h"
#include "engine/DisplayCurve.h"
#include "engine/LuminanceCompression.h"
#include "engine/lanes/Margins.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "bench/engine/EveryFloat.cpp"
#include <hwy/foreach_target.h>

#include "engine/lanes/Elementary-inl.h"

HWY_BEFORE_NAMESPACE();
namespace LS::Lanes::HWY_NAMESPACE {

// The functions on lanes, for four floats.

#if LS_HAS_LANES
void LogOfLuminance(const float* pf, double* pd, float)
{
    StoreDoubles(pd, Log(Widened(Load(pf)) + Each(0.000023)));
}
void LogOfValue(const float* pf, double* pd, float)
{
    StoreDoubles(pd, Log(Widened(Load(pf)) + Each(1.0)));
}
void BiasTerm(const float* pf, double* pd, float fPower)
{
    StoreDoubles(pd, BiasedLog(Load(pf), fPower));
}
#else
void LogOfLuminance(const float* pf, double* pd, float)
{
    std::transform(pf, pf + 4, pd, [](float f) { return std::log(f + 0.000023); });
}
void LogOfValue(const float* pf, double* pd, float)
{
    std::transform(pf, pf + 4, pd, [](float f) { return std::log(f + 1.0); });
}
void BiasTerm(const float* pf, double* pd, float fPower)
{
    std::transform(pf, pf + 4, pd,
                   [=](float f) { return std::log(2.0 + 8.0 * std::pow(static_cast<double>(f), fPower)); });
}
#endif

} // namespace LS::Lanes::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace LS::Lanes {
HWY_EXPORT(LogOfLuminance);
HWY_EXPORT(LogOfValue);
HWY_EXPORT(BiasTerm);
} // namespace LS::Lanes

namespace {

using namespace LS::Lanes;

constexpr std::size_t LANES = 4;
constexpr std::uint32_t GROUP = 1024; // consecutive floats
std::uint32_t g_nStep = GROUP;
bool g_bGood = true;

void Report(const char* szWhat, bool bGood, const char* szFormat, double dValue)
{
    std::printf("%-56s %-5s ", szWhat, bGood ? "holds" : "FAILS");
    std::printf(szFormat, dValue);
    std::puts("");
    std::fflush(stdout);
    g_bGood = g_bGood && bGood;
}

/// @param nEach  takes each nEach-th group only
template <typename Check> void ForGroups(float fFirst, float fLast, std::uint32_t nEach, Check check)
{
    const auto nLast = std::bit_cast<std::uint32_t>(fLast);
    for (std::uint64_t n = std::bit_cast<std::uint32_t>(fFirst); n <= nLast;
         n += std::uint64_t{nEach} * g_nStep) {
        std::array<float, GROUP> values;
        for (std::uint32_t i = 0; i < GROUP; ++i)
            values[i] = std::bit_cast<float>(std::min(static_cast<std::uint32_t>(n + i), nLast));
        check(values);
    }
}

/// The largest relative distance between a function on lanes and the library, over all floats from 0 to the
/// last.
template <typename OnLanes, typename Plain>
void CheckLogarithm(const char* szWhat, OnLanes onLanes, Plain plain)
{
    double dWorst = 0;
    ForGroups(0.0F, 3.4e38F, 1, [&](const std::array<float, GROUP>& values) {
        for (std::size_t i = 0; i < GROUP; i += LANES) {
            std::array<double, LANES> results;
            onLanes(&values[i], results.data());
            for (std::size_t k = 0; k < LANES; ++k) {
                const double dExpected = plain(values[i + k]);
                const double dError = results[k] == dExpected ? 0 : std::fabs(results[k] / dExpected - 1);
                if (!(dError <= dWorst)) // NaN, too
                    dWorst = dError;
            }
        }
    });
    Report(szWhat, dWorst <= ELEMENTARY_ERROR, "worst relative error 2^%.1f", std::log2(dWorst));
}

void CheckLogarithms()
{
    const float fPower = ToneCurve(0, 1, 0, TONE_BIAS).fBiasPower;
    const auto onLanes = [=](auto function) {
        return [=](const float* pf, double* pd) { function(pf, pd, fPower); };
    };
    CheckLogarithm("log(Y + 0.000023)", onLanes(HWY_DYNAMIC_DISPATCH(LogOfLuminance)),
                   [](float f) { return std::log(f + 0.000023); });
    CheckLogarithm("log(v + 1)", onLanes(HWY_DYNAMIC_DISPATCH(LogOfValue)),
                   [](float f) { return std::log(f + 1.0); });
    CheckLogarithm("log(2 + 8 x^p)", onLanes(HWY_DYNAMIC_DISPATCH(BiasTerm)),
                   [=](float f) { return std::log(2.0 + 8.0 * std::pow(static_cast<double>(f), fPower)); });
}

void CheckBytes(float fGamma)
{
    const DisplayBytes displayBytes(fGamma);
    std::size_t nFaults = 0;
    const auto check = [&](std::array<float, GROUP> values) {
        std::array<unsigned char, GROUP> bytes, expected;
        displayBytes.Convert(values, bytes.data());
        GammaCorrect(values, fGamma);
        ClampTop(values);
        FloatToBytes(values, expected.data());
        nFaults += bytes != expected;
    };
    ForGroups(0.0F, 1.1F, 1, check);
    ForGroups(1.1F, HUGE_VALF, 257, check);   // all 249
    ForGroups(-0.0F, -HUGE_VALF, 257, check); // all 0
    char acWhat[40];
    std::snprintf(acWhat, sizeof acWhat, "bytes at gamma %.1f", static_cast<double>(fGamma));
    Report(acWhat, nFaults == 0 && displayBytes.HasTable(), "%.0f groups differ",
           static_cast<double>(nFaults));
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && std::strcmp(argv[1], "--sample") == 0)
        g_nStep = 4099 * GROUP;
    CheckLogarithms();
    for (int nSlider = 10; nSlider <= 30; ++nSlider)
        CheckBytes(static_cast<float>(nSlider / 10.0));
    return g_bGood ? 0 : 1;
}

#endif // HWY_ONCE
