// The kernels of tone mapping against their plain twins, bit for bit, also where the floats are none.
#include "engine/Colour.h"
#include "engine/DisplayCurve.h"
#include "engine/LuminanceCompression.h"
#include "engine/lanes/Kernels.h"
#include "tests/support/Bits.h"
#include "tests/support/InstructionSets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <vector>

namespace LS::Tests {

namespace {

using Floats = std::vector<float>;

constexpr std::size_t LARGEST_WIDTH = 40;
constexpr float LARGEST = std::numeric_limits<float>::max();
constexpr float INF = std::numeric_limits<float>::infinity();
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();

float Radiance(std::mt19937& random)
{
    return std::exp2(std::uniform_real_distribution<float>(-14, 14)(random));
}

float Special(std::mt19937& random)
{
    static constexpr std::array<float, 13> VALUES{0.0F,     -0.0F,  1.0F,        -1.5F,   -2e-5F,
                                                  0.00001F, 1e-40F, 3e37F,       LARGEST, -LARGEST,
                                                  INF,      -INF,   NOT_A_NUMBER};
    return random() % 3 ? VALUES[random() % VALUES.size()] : Radiance(random);
}

/// Where the floats of a row come from: any bits, or a special value here and there among radiances.
enum class Source { ANY_BITS, SPECIAL, RADIANCE };

Floats Drawn(Source source, std::size_t nCount, unsigned nSeed)
{
    std::mt19937 random(nSeed);
    Floats values(nCount);
    for (float& f : values)
        if (source == Source::ANY_BITS)
            f = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        else
            f = source == Source::SPECIAL && random() % 4 == 0 ? Special(random) : Radiance(random);
    return values;
}

/// Calls check for rows of all small widths, of both kinds, on every instruction set.
void ForEveryRow(std::size_t nFloatsPerPixel,
                 const std::function<void(std::size_t nWidth, const Floats&)>& check)
{
    OnEveryInstructionSet([&] {
        for (const Source source : {Source::ANY_BITS, Source::SPECIAL})
            for (std::size_t nWidth = 0; nWidth <= LARGEST_WIDTH; ++nWidth)
                for (unsigned nSeed = 0; nSeed < 8; ++nSeed) {
                    SCOPED_TRACE(testing::Message() << "width " << nWidth);
                    check(nWidth, Drawn(source, nFloatsPerPixel * nWidth, nSeed));
                    if (testing::Test::HasFatalFailure())
                        return;
                }
    });
}

/// Three planes of a row's floats, as the pointers that kernels take.
struct Planes {
    explicit Planes(const Floats& values) : floats(values), nWidth(values.size() / 3) {}
    float* operator[](std::size_t n) { return floats.data() + n * nWidth; }

    Floats floats;
    std::size_t nWidth;
};

} // namespace

TEST(ToneKernels, ToLuminance)
{
    ForEveryRow(3, [](std::size_t nWidth, const Floats& pixels) {
        Floats expected = pixels, actual = pixels;
        // Behind them: sum and maximum.
        expected.insert(expected.end(), {-3.25F, 0.00001F});
        actual = expected;
        reference::RowToYxy(expected.data(), nWidth, &expected[3 * nWidth], &expected[3 * nWidth + 1]);
        if (nWidth > 0)
            RowToYxy(actual.data(), static_cast<std::int32_t>(nWidth), &actual[3 * nWidth],
                     &actual[3 * nWidth + 1]);
        ExpectSameBits(expected, actual);

        Planes planes(pixels), plain(pixels);
        Floats statistics{0, 1}, plainStatistics = statistics;
        PlanesToYxy(planes[0], planes[1], planes[2], nWidth, &statistics[0], &statistics[1]);
        reference::PlanesToYxy(plain[0], plain[1], plain[2], nWidth, &plainStatistics[0],
                               &plainStatistics[1]);
        ExpectSameBits(plainStatistics, statistics);
        ExpectSameBits(plain.floats, planes.floats);
    });
}

// The sum of logarithms passes powers of two, up and down, and zero; where it is small, each logarithm shows.
TEST(ToneKernels, SumOfLogarithms)
{
    OnEveryInstructionSet([] {
        std::mt19937 random(5); // NOLINT(bugprone-random-generator-seed): the same pixels each run
        for (int nRow = 0; nRow < 400; ++nRow) {
            const float fScale = std::exp2(std::uniform_real_distribution<float>(-20, 20)(random));
            const float fSpread = static_cast<float>(nRow % 8);
            std::uniform_real_distribution<float> stops(-fSpread, fSpread);
            Floats pixels(std::size_t{3} * 1001);
            for (float& f : pixels)
                f = fScale * std::exp2(stops(random));
            const float fStart = nRow % 3 == 0 ? 0.0F : std::ldexp(nRow % 2 ? 1.0F : -1.0F, nRow % 25);
            Floats expected{fStart, 1.0F}, actual = expected;
            Floats copy = pixels;
            reference::RowToYxy(copy.data(), 1001, &expected[0], &expected[1]);
            RowToYxy(pixels.data(), 1001, &actual[0], &actual[1]);
            SCOPED_TRACE(nRow);
            ExpectSameBits(expected, actual);
        }
    });
}

TEST(ToneKernels, Compression)
{
    // From curves of a picture to ones whose parameters are no numbers, or whose bias turns the power round.
    const struct {
        float fExposure, fMax, fLogAverage, fBias;
    } curves[] = {{0, 1000, 1, 0.85F}, {2.5F, 30, -1, 0.85F}, {-5, 0.5F, -4, 0.85F},
                  {0, 1, 0, 1.5F},     {0, INF, 0, 0.85F},    {0, 1, INF, 0.85F},
                  {0, -1, 0, 0.85F},   {0, 2, 0, -1},         {140, 5, -60, 0.85F}};
    for (const auto& c : curves) {
        SCOPED_TRACE(testing::Message() << "maximum " << c.fMax << ", mean " << c.fLogAverage);
        const ToneCurve curve(c.fExposure, c.fMax, c.fLogAverage, c.fBias);
        ForEveryRow(3, [&](std::size_t nWidth, const Floats& band) {
            for (std::size_t nRows = 1; nRows <= TONE_BLOCK; ++nRows) {
                Floats expected = band, actual = band;
                reference::CompressBand(expected.data(), nWidth, nRows, curve);
                CompressBand(actual.data(), nWidth, nRows, curve);
                ExpectSameBits(expected, actual);
            }
        });
    }
}

// So many pixels that some results lie next to the middle between two floats, where only the library tells.
TEST(ToneKernels, CompressionNearRoundingBoundaries)
{
    const ToneCurve curve(0.5F, 300, 0.7F, TONE_BIAS);
    OnEveryInstructionSet([&] {
        for (unsigned nSeed = 0; nSeed < 10; ++nSeed) {
            Floats expected = Drawn(Source::RADIANCE, std::size_t{3} * 12000, nSeed), actual = expected;
            reference::CompressBand(expected.data(), 12000, 3, curve);
            CompressBand(actual.data(), 12000, 3, curve);
            ExpectSameBits(expected, actual);
        }
    });
}

TEST(ToneKernels, BackToRGB)
{
    ForEveryRow(3, [](std::size_t nWidth, const Floats& values) {
        const float* pfXY = values.data() + nWidth;
        Floats expected(3 * nWidth), actual(3 * nWidth);
        reference::YxyToRGB(values.data(), pfXY, nWidth, expected.data());
        YxyToRGB(values.data(), pfXY, static_cast<std::int32_t>(nWidth), actual.data());
        ExpectSameBits(expected, actual);

        Planes planes(values), plain(values);
        PlanesToRGB(planes[0], planes[1], planes[2], nWidth);
        reference::PlanesToRGB(plain[0], plain[1], plain[2], nWidth);
        ExpectSameBits(plain.floats, planes.floats);
    });
}

namespace {

/// Floats around each place where the byte changes, and around where the branches of the curve meet.
Floats Borders(float fGamma)
{
    Floats borders;
    const auto addAround = [&](float fValue) {
        const auto nBits = std::bit_cast<std::int32_t>(fValue);
        for (std::int32_t n = -8; n <= 8; ++n)
            borders.push_back(std::bit_cast<float>(nBits + n));
    };
    const GammaCurve curve(fGamma);
    addAround(curve.fStart);
    for (int nByte = 1; nByte < 250; ++nByte) {
        addAround(static_cast<float>(nByte / 255.0 / curve.fSlope));
        addAround(std::pow(static_cast<float>((nByte / 255.0 + 0.099) / 1.099), 1 / curve.fExponent));
    }
    return borders;
}

} // namespace

// Of the slider, and from the steepest to the flattest: some have no table, all have their bytes.
TEST(ToneKernels, Bytes)
{
    Floats gammas{0.2000001F, 0.21F, 0.3F, 0.5F, 0.65F, 5.0F, 40.0F, 1e9F};
    for (int nSlider = 10; nSlider <= 30; ++nSlider)
        gammas.push_back(static_cast<float>(nSlider / 10.0));
    for (const float fGamma : gammas) {
        SCOPED_TRACE(fGamma);
        Floats values = Borders(fGamma);
        for (const Source source : {Source::ANY_BITS, Source::SPECIAL}) {
            const Floats drawn = Drawn(source, 2999, 1);
            values.insert(values.end(), drawn.begin(), drawn.end());
        }
        std::vector<unsigned char> expected(values.size()), actual(values.size());
        Floats plain = values;
        GammaCorrect(plain, fGamma);
        ClampTop(plain);
        FloatToBytes(plain, expected.data());
        EXPECT_EQ(249, *std::max_element(expected.begin(), expected.end()));
        OnEveryInstructionSet([&] {
            const DisplayBytes displayBytes(fGamma);
            EXPECT_EQ(fGamma > 0.65F && fGamma < 100, displayBytes.HasTable());
            plain = values;
            displayBytes.Convert(plain, actual.data());
            EXPECT_EQ(expected, actual);
        });
    }
}

} // namespace LS::Tests
