// The merge of one row against its definition, bit for bit, also where the floats are none.
#include "engine/MergeRow.h"

#include "engine/ExposureMerge.h"
#include "tests/support/Bits.h"
#include "tests/support/InstructionSets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <vector>

using namespace LS::Tests;

namespace {

using Floats = std::vector<float>;
using Row = std::vector<unsigned char>; ///< four bytes a pixel: nothing, red, green, blue

constexpr float INF = std::numeric_limits<float>::infinity();
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
constexpr float SUBNORMAL = std::numeric_limits<float>::denorm_min();
constexpr std::size_t LARGEST_WIDTH = 40;

/// Dead, alive or at the border, long stretches of each, so that whole vectors have no usable reading.
Row AdversarialRow(std::mt19937& random)
{
    Row row(4 * LARGEST_WIDTH);
    static constexpr std::array<unsigned char, 8> BORDERS{0, 7, 8, 127, 128, 247, 248, 255};
    unsigned nKind = 0;
    for (unsigned char& z : row) {
        if (random() % 24 == 0)
            nKind = random() % 4;
        const std::array<unsigned char, 4> kinds{
            static_cast<unsigned char>(random() % 8), static_cast<unsigned char>(248 + random() % 8),
            BORDERS[random() % BORDERS.size()], static_cast<unsigned char>(random())};
        z = kinds[nKind];
    }
    return row;
}

/// One pixel as it is defined, one image after the other. Everything is stored in a float as it arises.
std::array<float, 3> MergeByDefinition(const std::vector<Row>& vRows, std::size_t nPixel, const Floats& E,
                                       const std::array<Floats, 3>& curves, const Floats& W)
{
    std::array<float, 3> acc{};
    float wsum = 0, satE = 1000000, darkE = -1000000;
    const unsigned char *sat = nullptr, *dark = nullptr;
    for (std::size_t i = 0; i < vRows.size(); ++i) {
        const unsigned char* const z = &vRows[i][4 * nPixel + 1];
        if (*std::max_element(z, z + 3) > 247 && E[i] < satE) {
            satE = E[i];
            sat = z;
        }
        if (*std::min_element(z, z + 3) < 8 && E[i] > darkE) {
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
        for (std::size_t c = 0; c < 3; ++c) {
            if (dark)
                acc[c] = curves[c][dark[c]] / darkE;
            if (sat)
                acc[c] = curves[c][sat[c]] / satE;
        }
        if (!dark && !sat)
            return {};
        wsum = 1;
    }
    return {acc[0] / wsum, acc[1] / wsum, acc[2] / wsum};
}

} // namespace

TEST(MergeRow, EqualsItsDefinitionOnEveryInstructionSet)
{
    std::mt19937 random(11); // NOLINT(bugprone-random-generator-seed): the same rows each run
    const auto photographic = [&] { return std::exp2(std::uniform_real_distribution<float>(-9, 9)(random)); };
    const auto special = [&] {
        static constexpr std::array<float, 9> VALUES{
            0.0F, -0.0F, SUBNORMAL, INF, -INF, NOT_A_NUMBER, std::numeric_limits<float>::max(), -1.0F, 2e6F};
        return random() % 2 ? VALUES[random() % VALUES.size()] : photographic();
    };
    const std::function<float()> sources[] = {photographic, special};
    for (const auto& exposure : sources)
        for (const auto& other : sources)
            for (std::size_t nImages = 0; nImages <= 9; ++nImages) {
                SCOPED_TRACE(nImages);
                std::array<Floats, 3> curves;
                std::vector<float*> vafCurves;
                for (auto& curve : curves) {
                    std::generate_n(std::back_inserter(curve), 256, other);
                    vafCurves.push_back(curve.data());
                }
                Floats vfExposures(nImages), vfWeights;
                std::generate(vfExposures.begin(), vfExposures.end(), exposure);
                BuildWeightTable(vfWeights);
                if (nImages % 2 == 1)
                    std::generate(vfWeights.begin(), vfWeights.end(), other);
                const MergeTables tables(vfExposures, vafCurves, vfWeights, 8, 247);

                std::vector<Row> vRows;
                std::vector<const unsigned char*> vpRows;
                for (std::size_t i = 0; i < nImages; ++i)
                    vRows.push_back(AdversarialRow(random));
                for (const Row& row : vRows)
                    vpRows.push_back(row.data());
                Floats vfDefined;
                for (std::size_t x = 0; x < LARGEST_WIDTH; ++x) {
                    const auto pixel = MergeByDefinition(vRows, x, vfExposures, curves, vfWeights);
                    vfDefined.insert(vfDefined.end(), pixel.begin(), pixel.end());
                }
                Floats vfPlain(3 * LARGEST_WIDTH);
                reference::MergePixels(tables, vpRows, 0, LARGEST_WIDTH, vfPlain.data());
                ExpectSameBits(vfDefined, vfPlain);
                OnEveryInstructionSet([&] {
                    for (std::size_t nWidth = 0; nWidth <= LARGEST_WIDTH; ++nWidth) {
                        // What lies behind the row must stay as it is.
                        Floats vfExpected(3 * LARGEST_WIDTH + 8, 77.0F), vfActual(vfExpected);
                        std::copy_n(vfDefined.begin(), 3 * nWidth, vfExpected.begin());
                        MergeRow(tables, vpRows, static_cast<std::int32_t>(nWidth), vfActual.data());
                        SCOPED_TRACE(nWidth);
                        ExpectSameBits(vfExpected, vfActual);
                        if (testing::Test::HasFatalFailure())
                            return;
                    }
                });
            }
}

TEST(WeightTable, TriangleWithDeadZones)
{
    Floats W;
    BuildWeightTable(W);
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
