// The solver against systems whose solution is known.
#include "engine/LeastSquares.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <vector>

extern "C" int openblas_get_num_threads();

namespace {

TEST(LeastSquares, RefusesWhatIsNotFinite)
{
    for (const double dBad : {std::nan(""), std::numeric_limits<double>::infinity()}) {
        std::vector<double> vA = {1, dBad}, vB = {1, 1};
        EXPECT_EQ(-4, SolveLeastSquares(vA, vB, 2, 1));
        vA = {1, 1};
        vB = {dBad, 1};
        EXPECT_EQ(-6, SolveLeastSquares(vA, vB, 2, 1));
    }
}

TEST(LeastSquares, OneThreadAndTheSameBitsAgain)
{
    constexpr std::int32_t ROWS = 700, COLUMNS = 300; // large enough for the library to share it out
    std::mt19937 random(1);
    std::uniform_real_distribution<double> draw(-1, 1);
    std::vector<double> vA(std::size_t{ROWS} * COLUMNS), vB(ROWS);
    std::generate(vA.begin(), vA.end(), [&] { return draw(random); });
    std::generate(vB.begin(), vB.end(), [&] { return draw(random); });
    auto vA2 = vA, vB2 = vB;
    ASSERT_EQ(0, SolveLeastSquares(vA, vB, ROWS, COLUMNS));
    ASSERT_EQ(0, SolveLeastSquares(vA2, vB2, ROWS, COLUMNS));
    EXPECT_EQ(vB, vB2);
    EXPECT_EQ(1, openblas_get_num_threads());
}

} // namespace
