// The fast roads of the merge against the plain one, bit for bit, also where the floats are none.
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

constexpr float INF = std::numeric_limits<float>::infinity();
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
constexpr float SUBNORMAL = std::numeric_limits<float>::denorm_min();
constexpr std::size_t LARGEST_WIDTH = 40;

/// Dead, alive or at the border, long stretches of each, so that whole vectors have no usable reading.
std::vector<unsigned char> AdversarialRow(std::mt19937& random)
{
    std::vector<unsigned char> row(4 * LARGEST_WIDTH);
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

} // namespace

TEST(MergeRowKernel, EqualsThePlainRoadOnEveryInstructionSet)
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
                std::array<std::vector<float>, 3> curves;
                std::vector<float*> vafCurves;
                for (auto& curve : curves) {
                    std::generate_n(std::back_inserter(curve), 256, other);
                    vafCurves.push_back(curve.data());
                }
                std::vector<float> vfExposures(nImages), vfWeights;
                std::generate(vfExposures.begin(), vfExposures.end(), exposure);
                BuildWeightTable(vfWeights);
                if (nImages % 2 == 1)
                    std::generate(vfWeights.begin(), vfWeights.end(), other);
                const MergeTables tables(vfExposures, vafCurves, vfWeights, 8, 247);

                std::vector<std::vector<unsigned char>> vRows(nImages);
                std::vector<const unsigned char*> vpRows;
                for (auto& row : vRows) {
                    row = AdversarialRow(random);
                    vpRows.push_back(row.data());
                }
                OnEveryInstructionSet([&] {
                    for (std::size_t nWidth = 0; nWidth <= LARGEST_WIDTH; ++nWidth) {
                        // What lies behind the row must stay as it is.
                        std::vector<float> vfExpected(3 * LARGEST_WIDTH + 8, 77.0F), vfActual(vfExpected);
                        const auto nPixels = static_cast<std::int32_t>(nWidth);
                        reference::MergePixels(tables, vpRows, 0, nWidth, vfExpected.data());
                        MergeRow(tables, vpRows, nPixels, vfActual.data());
                        SCOPED_TRACE(nWidth);
                        ExpectSameBits(vfExpected, vfActual);
                        if (testing::Test::HasFatalFailure())
                            return;
                    }
                });
            }
}
