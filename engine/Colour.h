// Linear RGB, and luminance with chromaticity: the two forms of a pixel during tone mapping.
//
// In all units of the tone mapping a value with a name is a 32-bit float, rounded when it is stored, and a
// constant is a double. So an expression that holds a constant or a library function is evaluated in double
// up to its store, and one without is rounded at each step.
#pragma once

#include <cstddef>
#include <cstdint>

struct PixelRGB {
    float fR, fG, fB;
};

/// CIE luminance Y and chromaticity x, y.
struct PixelYxy {
    float fLuminance, fx, fy;
};

/// Black, and whatever has no positive sum of X, Y and Z (NaN included), becomes 0, 0, 0.
inline PixelYxy YxyFromRGB(PixelRGB c)
{
    const auto fX = static_cast<float>(0.5141364 * c.fR + 0.3238786 * c.fG + 0.16036376 * c.fB);
    const auto fY = static_cast<float>(0.265068 * c.fR + 0.67023426 * c.fG + 0.06409157 * c.fB);
    const auto fZ = static_cast<float>(0.0241188 * c.fR + 0.1228178 * c.fG + 0.8444266 * c.fB);
    const float fSum = fX + fY + fZ;
    if (fSum > 0)
        return {fY, fX / fSum, fY / fSum};
    return {0, 0, 0};
}

/// The inverse, but for the four decimals of its matrix: saturated colours may end a little below 0.
inline PixelRGB RGBFromYxy(PixelYxy c)
{
    constexpr double TINY = 0.00001; // stands for what can't be divided
    auto fX = static_cast<float>(TINY);
    auto fZ = fX;
    if (c.fLuminance > TINY && c.fx > TINY && c.fy > TINY) {
        fX = c.fLuminance * c.fx / c.fy;
        fZ = fX / c.fx - fX - c.fLuminance;
    }
    return {static_cast<float>(2.5651 * fX - 1.1665 * c.fLuminance - 0.3986 * fZ),
            static_cast<float>(-1.0217 * fX + 1.9777 * c.fLuminance + 0.0439 * fZ),
            static_cast<float>(0.0753 * fX - 0.2543 * c.fLuminance + 1.1892 * fZ)};
}

/// The definitions, one pixel at a time. The functions of the same names below give their bits.
namespace reference {

void RowToYxy(float* pHDRData, std::size_t nPixels, float* pfSumLog, float* pfMax);
void PlanesToYxy(float* pfFirst, float* pfSecond, float* pfThird, std::size_t nPixels, float* pfSumLog,
                 float* pfMax);
void YxyToRGB(const float* pYChan, const float* pxyChan, std::size_t nPixels, float* pfRGB);
void PlanesToRGB(float* pfFirst, float* pfSecond, float* pfThird, std::size_t nPixels);

} // namespace reference

/// Converts one row in place and folds its luminance into the statistics of the image.
///
/// @param pHDRData  nWidth x 3 floats, R, G, B; becomes Y, x, y
/// @param pfSumLog,pfMax  see FoldLuminance
/// @return true
bool RowToYxy(float* pHDRData, std::int32_t nWidth, float* pfSumLog, float* pfMax);

/// The same for planes: R, G and B become Y, x and y.
void PlanesToYxy(float* pfFirst, float* pfSecond, float* pfThird, std::size_t nPixels, float* pfSumLog,
                 float* pfMax);

/// Converts one row back.
/// @param pYChan   nWidth floats   @param pxyChan  nWidth x 2 floats, x, y
/// @param pfRGB    receives nWidth x 3 floats, R, G, B
void YxyToRGB(const float* pYChan, const float* pxyChan, std::int32_t nWidth, float* pfRGB);

/// The same for planes, in place: Y, x and y become R, G and B.
void PlanesToRGB(float* pfFirst, float* pfSecond, float* pfThird, std::size_t nPixels);
