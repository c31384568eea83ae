// The transfer curve and the way to bytes, against known values.
#include "engine/DisplayCurve.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr float INF = std::numeric_limits<float>::infinity();
constexpr float NAN_VALUE = std::numeric_limits<float>::quiet_NaN();

TEST(DisplayCurve, LineAndExponentByGamma)
{
    const struct {
        float fGamma, fExponent, fStart, fSlope;
    } cases[] = {
        {1.0F, 1.125F, 0.162F, 0.5F},
        {2.1F, 0.9F / 1.9F, 0.0135F, 6.0F}, // 2.1 - 0.2 comes out just below 1.9
        {2.2F, 0.45F, 0.018F, 4.5F},
        {2.3F, 0.9F / 2.1F, 0.018F, 4.5F}, // and 2.3 - 0.2 just below 2.1
        {3.0F, 0.9F / 2.8F, 0.003F, 27.0F},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.fGamma);
        const GammaCurve curve(c.fGamma);
        // A gamma is off by up to 1.2e-7, and 2 - g multiplies that tenfold.
        EXPECT_NEAR(c.fExponent, curve.fExponent, 1e-6);
        EXPECT_NEAR(c.fStart, curve.fStart, 1e-6 * c.fStart * 10);
        EXPECT_NEAR(c.fSlope, curve.fSlope, 1e-6 * c.fSlope * 10);
    }
}

TEST(DisplayCurve, LineEndsAtItsStart)
{
    const GammaCurve curve(2.2F);
    EXPECT_EQ(0.018F * 4.5F, curve.Apply(0.018F));
    const float fAbove = std::nextafter(0.018F, 1.0F);
    EXPECT_FLOAT_EQ(static_cast<float>(1.099 * std::pow(double{fAbove}, 0.45) - 0.099), curve.Apply(fAbove));
    EXPECT_NEAR(1.0, curve.Apply(1.0F), 1e-6);
}

TEST(DisplayCurve, FastPow)
{
    const struct {
        float fX, fExponent, fPower;
    } cases[] = {{7, -0.000009F, 1},  {0.3F, 1.000009F, 0.3F},    {-3, 2, 9},
                 {5, 2.999991F, 125}, {2, 0.5F, std::sqrt(2.0F)}, {2, 1.00002F, 2.00002773F}};
    for (const auto& c : cases)
        EXPECT_FLOAT_EQ(c.fPower, FastPow(c.fX, c.fExponent)) << c.fX << " ^ " << c.fExponent;
}

TEST(DisplayCurve, Bytes)
{
    const struct {
        float fValue;
        int nByte;
    } cases[] = {
        {-1e-8F, 0},     {-INF, 0},       {NAN_VALUE, 0}, {INF, 249},
        {0.0039215F, 0}, {0.0039217F, 1}, {0.97F, 247},   {0.99F, 249},
    };
    for (const auto& c : cases) {
        std::vector<float> vfValues{c.fValue};
        unsigned char nByte = 77;
        ClampTop(vfValues);
        FloatToBytes(vfValues, &nByte);
        EXPECT_EQ(c.nByte, nByte) << c.fValue;
    }
}

} // namespace
