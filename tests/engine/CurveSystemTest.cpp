// Tables, grid and equations of response recovery.
#include "engine/CurveSystem.h"
#include "engine/RecoveryTables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>

namespace {

TEST(LogGrid, NothingBeyondTheNodesReachesTheSystem)
{
    int nBeyond = 0;
    for (std::int32_t nLow = 0; nLow < 255; ++nLow)
        for (std::int32_t nHigh = nLow + 1; nHigh < 256; ++nHigh) {
            const LogGrid grid(nLow, nHigh);
            const auto position = grid.PositionOf(255);
            ASSERT_TRUE(position.nBelow >= 254 && position.nAbove <= 256) << nLow << ' ' << nHigh;
            if (position.nAbove < 256 || ++nBeyond > 1)
                continue;
            CurveSystem system(grid, 1, 2);
            system.AddReading(255, 0.5F, 1.0, 1);
            EXPECT_NEAR(0.5, system.At(0, 255), 1e-4);
            EXPECT_EQ(0.0, system.At(0, 256)); // the other sample's column
            EXPECT_EQ(-0.5, system.At(0, 257));
            std::vector<double> nodes(258, 1.0);
            nodes[256] = 1000; // a sample's radiance
            EXPECT_EQ(1.0F, CurveAt(nodes, position));
        }
    EXPECT_LT(0, nBeyond);
}

TEST(CurveSystem, RowsOfTheFirstSolve)
{
    const LogGrid grid(0, 255); // r = 1, node and value fall together in the smoothness rows
    CurveSystem system(grid, 2, 1);
    system.AddReading(1.0F, 0.25F, 3.0, 0);
    system.AddReading(0.0F, 0.5F, -2.0, 0);
    system.AddAnchor();
    system.AddSmoothness(20.0F, 1.25); // S = sqrt((0.25^2 + 0.5^2) / 1.25) = 0.5

    EXPECT_NEAR(0.25 * 0.125, system.At(0, 31), 1e-5); // log(2) / (log(256) / 255) = 31.875
    EXPECT_NEAR(0.25 * 0.875, system.At(0, 32), 1e-5);
    EXPECT_EQ(-0.25, system.At(0, 256));
    EXPECT_EQ(0.75, system.RightSide(0));
    EXPECT_EQ(1.0, system.At(2, 223)); // log(128) / (log(256) / 255) = 223.125
    for (const std::int32_t k : {0, 126, 252}) {
        const double dExpected = 20 * 0.5 * BiweightTable()[static_cast<std::size_t>(k) + 1];
        EXPECT_NEAR(dExpected, system.At(3 + k, k), 1e-6);
        EXPECT_EQ(-2 * system.At(3 + k, k), system.At(3 + k, k + 1));
        EXPECT_EQ(system.At(3 + k, k), system.At(3 + k, k + 2));
    }
}

} // namespace
