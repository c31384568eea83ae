// The built-in curve.
#include "engine/ResponseCurve.h"

#include <gtest/gtest.h>

TEST(StandardCurve, KnownEntries)
{
    const auto& curve = StandardCurve();
    EXPECT_EQ(0.0001F, curve[0]);
    EXPECT_EQ(0.000950147F, curve[1]);
    EXPECT_EQ(3.24911F, curve[128]);
    EXPECT_EQ(10.4862F, curve[255]);
    for (std::size_t z = 1; z < curve.size(); ++z)
        EXPECT_GT(curve[z], curve[z - 1]) << z;
}
