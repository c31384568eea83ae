// The merge of one row against a plain twin, bit for bit.
#include "engine/ExposureMerge.h"

#include "engine/ResponseCurve.h"
#include "tests/support/Bits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

namespace {

using Pixel = std::array<unsigned char, 3>;
using Result = std::array<float, 3>;

/// Three curves in the form of the engine's interface: the standard one, each with a scale of its own.
struct TestCurves {
    TestCurves()
    {
        for (std::size_t c = 0; c < CURVE_CHANNELS; ++c) {
            for (const float f : StandardCurve())
                storage[c].push_back(f * (1 + static_cast<float>(c) / 3));
            pointers.push_back(storage[c].data());
        }
    }
    std::array<std::vector<float>, CURVE_CHANNELS> storage;
    std::vector<float*> pointers;
};

std::vector<float> Weights()
{
    std::vector<float> vfWeights;
    BuildWeightTable(vfWeights);
    return vfWeights;
}

/// One pixel as it is defined, one image after the other. Everything is stored in a float as it arises.
Result MergeByDefinition(const std::vector<Pixel>& vImages, const std::vector<float>& E,
                         const std::vector<float*>& curves)
{
    const std::vector<float> W = Weights();
    Result acc{};
    float wsum = 0, satE = 1000000, darkE = -1000000;
    Pixel sat{}, dark{};
    for (std::size_t i = 0; i < vImages.size(); ++i) {
        const Pixel z = vImages[i];
        if (*std::max_element(z.begin(), z.end()) > 247 && E[i] < satE) {
            satE = E[i];
            sat = z;
        }
        if (*std::min_element(z.begin(), z.end()) < 8 && E[i] > darkE) {
            darkE = E[i];
            dark = z;
        }
        float w = W[z[0]] + W[z[1]];
        w = w + W[z[2]];
        w = static_cast<float>(w / 3.0);
        for (std::size_t c = 0; c < 3; ++c) {
            float share = curves[c][z[c]] * w;
            share = share / E[i];
            acc[c] = acc[c] + share;
        }
        wsum = wsum + w;
    }
    if (std::fabs(wsum) < 0.00001F) {
        if (darkE > -1000000) {
            for (std::size_t c = 0; c < 3; ++c)
                acc[c] = curves[c][dark[c]] / darkE;
            wsum = 1;
        }
        if (satE < 1000000) {
            for (std::size_t c = 0; c < 3; ++c)
                acc[c] = curves[c][sat[c]] / satE;
            wsum = 1;
        }
    }
    if (std::fabs(wsum) < 0.00001F)
        return {};
    return {acc[0] / wsum, acc[1] / wsum, acc[2] / wsum};
}

/// vImages[i] holds the row of image i.
std::vector<Result> Merge(const std::vector<std::vector<Pixel>>& vImages, const std::vector<float>& E,
                          const std::vector<float*>& curves)
{
    std::vector<std::vector<unsigned char>> vRows;
    std::vector<const unsigned char*> vPointers;
    for (const auto& image : vImages) {
        std::vector<unsigned char>& row = vRows.emplace_back();
        for (const Pixel& z : image)
            row.insert(row.end(), {99, z[0], z[1], z[2]});
    }
    vPointers.reserve(vRows.size());
    for (const auto& row : vRows)
        vPointers.push_back(row.data());

    const std::vector<float> vfWeights = Weights();
    std::int32_t nLow = 0, nHigh = 0;
    FindWeightRange(vfWeights, &nLow, &nHigh);
    const std::size_t nWidth = vImages[0].size();
    const auto pfRow =
        MergeRow(vPointers, static_cast<std::int32_t>(nWidth), 3, E, curves, vfWeights, nLow, nHigh);
    std::vector<Result> vResults(nWidth);
    for (std::size_t x = 0; x < nWidth; ++x)
        std::copy_n(pfRow.get() + 3 * x, 3, vResults[x].begin());
    return vResults;
}

/// Bytes from the dead zones, their borders, the peak and anywhere else.
unsigned char AdversarialByte(std::mt19937& random)
{
    static constexpr unsigned char BORDERS[] = {0, 1, 7, 8, 9, 127, 128, 246, 247, 248, 254, 255};
    switch (random() % 4) {
    case 0:
        return static_cast<unsigned char>(random() % 8);
    case 1:
        return static_cast<unsigned char>(248 + random() % 8);
    case 2:
        return BORDERS[random() % std::size(BORDERS)];
    default:
        return static_cast<unsigned char>(random());
    }
}

} // namespace

TEST(MergeRow, EqualsItsDefinitionBitForBit)
{
    constexpr std::size_t WIDTH = 400;
    std::mt19937 random(7); // NOLINT(bugprone-random-generator-seed): the same series each run
    const TestCurves curves;
    for (std::size_t nImages = 1; nImages <= 9; ++nImages) {
        std::vector<std::vector<Pixel>> vImages(nImages, std::vector<Pixel>(WIDTH));
        for (auto& image : vImages)
            for (Pixel& z : image)
                z = {AdversarialByte(random), AdversarialByte(random), AdversarialByte(random)};
        std::vector<float> E(nImages);
        for (float& fE : E)
            fE = std::exp2(std::uniform_real_distribution<float>(-16, 8)(random));

        const std::vector<Result> vMerged = Merge(vImages, E, curves.pointers);
        for (std::size_t x = 0; x < WIDTH; ++x) {
            std::vector<Pixel> vPixel;
            vPixel.reserve(nImages);
            for (const auto& image : vImages)
                vPixel.push_back(image[x]);
            SCOPED_TRACE(testing::Message() << nImages << " images, pixel " << x);
            LS::Tests::ExpectSameBits(MergeByDefinition(vPixel, E, curves.pointers), vMerged[x]);
        }
    }
}

TEST(WeightTable, TriangleWithDeadZones)
{
    const std::vector<float> W = Weights();
    ASSERT_EQ(256U, W.size());
    for (std::size_t z = 0; z < 256; ++z) {
        EXPECT_EQ(W[z], W[255 - z]) << z;
        EXPECT_EQ(z < 8 || z > 247, W[z] == 0) << z;
    }
    EXPECT_EQ(static_cast<float>(8 / 127.0), W[8]);
    EXPECT_EQ(1.0F, W[127]);

    std::int32_t nLow = 0, nHigh = 0;
    FindWeightRange(W, &nLow, &nHigh);
    EXPECT_EQ(8, nLow);
    EXPECT_EQ(247, nHigh);
}

TEST(ExposureList, ShutterAndAperture)
{
    std::vector<float> E{7};
    EXPECT_TRUE(ExposureList({1 / 60.0F, 2}, {8, 1}, E));
    ASSERT_EQ(3U, E.size()) << "appends";
    EXPECT_NEAR(0.00215668, E[1], 5e-9); // half a unit of the last digit given
    EXPECT_FLOAT_EQ(200 / 12.07488F, E[2]);
}
