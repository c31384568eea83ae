// The solver against systems whose solution is known.
#include "engine/LeastSquares.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
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

TEST(LeastSquares, OneThreadGivesTheSameBitsAgain)
{
    std::vector<double> vA = {2}, vB = {6};
    ASSERT_EQ(0, SolveLeastSquares(vA, vB, 1, 1));
    EXPECT_EQ(3, vB[0]);
    EXPECT_EQ(1, openblas_get_num_threads());
}

} // namespace
