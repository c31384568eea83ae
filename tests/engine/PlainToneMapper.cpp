// Drago's operator, the exposure control and the transfer curve, one published step after the other.
#include "tests/engine/PlainToneMapper.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace LS::Tests {

namespace {

using Triple = std::array<float, 3>;

constexpr double TO_XYZ[3][3] = {{0.5141364, 0.3238786, 0.16036376},
                                 {0.265068, 0.67023426, 0.06409157},
                                 {0.0241188, 0.1228178, 0.8444266}};
constexpr double TO_RGB[3][3] = {
    {2.5651, -1.1665, -0.3986}, {-1.0217, 1.9777, 0.0439}, {0.0753, -0.2543, 1.1892}};

float Rounded(double dValue)
{
    return static_cast<float>(dValue);
}

Triple Product(const double (&matrix)[3][3], const Triple& v)
{
    Triple result{};
    for (std::size_t i = 0; i < 3; ++i)
        result[i] = Rounded(matrix[i][0] * v[0] + matrix[i][1] * v[1] + matrix[i][2] * v[2]);
    return result;
}

class PlainToneMapper {
public:
    PlainToneMapper(const Picture& picture, float fMaxStart)
        : m_nWidth(picture.nWidth), m_nHeight(picture.nHeight), m_fMax(fMaxStart)
    {
        for (std::size_t i = 0; i < picture.vfPixels.size(); i += 3)
            AddPixel({picture.vfPixels[i], picture.vfPixels[i + 1], picture.vfPixels[i + 2]});
    }

    void Compress(float fExposure)
    {
        const float fScale = Rounded(std::pow(2.0, static_cast<double>(fExposure)));
        const float fMean = Rounded(std::exp(double{Rounded(m_fSumLog / (1.0 * m_nWidth * m_nHeight))}));
        m_fBiasP = Rounded(std::log(double{0.85F}) / -0.693147);
        m_fRelative = m_fMax / fMean;
        m_fDivisor = Rounded(std::log10(m_fRelative + 1.0));
        for (Triple& pixel : m_vPixels) {
            pixel[0] = pixel[0] / fMean;
            pixel[0] = pixel[0] * fScale;
        }
        // Each pixel looks its block up in the normalised picture.
        const std::vector<Triple> vNormalised = m_vPixels;
        for (int y = 0; y < m_nHeight; ++y)
            for (int x = 0; x < m_nWidth; ++x)
                m_vPixels[Index(x, y)][0] = Compressed(vNormalised, x, y);
    }

    Bytes ToBytes(float fGamma)
    {
        Bytes bytes;
        for (const Triple& pixel : m_vPixels)
            for (const float fLinear : ToRGB(pixel)) {
                float fValue = Corrected(fLinear, fGamma);
                if (fValue > 0.98)
                    fValue = Rounded(0.98);
                bytes.push_back(static_cast<unsigned char>(fValue >= 0 ? std::trunc(fValue * 255.0) : 0.0));
            }
        return bytes;
    }

private:
    std::size_t Index(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_nWidth) + static_cast<std::size_t>(x);
    }

    void AddPixel(const Triple& rgb)
    {
        const Triple xyz = Product(TO_XYZ, rgb);
        const float fSum = xyz[0] + xyz[1] + xyz[2];
        const bool bPositive = fSum > 0;
        m_vPixels.push_back(bPositive ? Triple{xyz[1], xyz[0] / fSum, xyz[1] / fSum} : Triple{});
        const float fY = m_vPixels.back()[0];
        if (fY > m_fMax)
            m_fMax = fY;
        m_fSumLog = Rounded(m_fSumLog + std::log(fY + 0.000023));
    }

    float Compressed(const std::vector<Triple>& vNormalised, int x, int y) const
    {
        const int nLeft = x - x % 3;
        const int nTop = y - y % 3;
        float fTotal = 0;
        for (int row = nTop; row < nTop + 3 && row < m_nHeight; ++row)
            for (int column = nLeft; column < nLeft + 3 && column < m_nWidth; ++column)
                fTotal += vNormalised[Index(column, row)][0];
        const float fFirst = vNormalised[Index(nLeft, nTop)][0];
        const float fContrast = Rounded(fTotal / 9.0 - fFirst);
        const double v = vNormalised[Index(x, y)][0];
        if (fContrast <= -1 || fContrast >= 1)
            return Rounded(std::log(v + 1) / Denominator(Rounded(v)) / m_fDivisor);

        const bool bHasCentre = nLeft + 1 < m_nWidth && nTop + 1 < m_nHeight;
        const float fCentre = bHasCentre ? vNormalised[Index(nLeft + 1, nTop + 1)][0] : fFirst;
        double dNumerator = std::log(v + 1);
        if (v < 1)
            dNumerator = v * (v + 6) / (4 * v + 6);
        else if (v < 2)
            dNumerator = v * (0.7662 * v + 6) / (3.7658 * v + 5.9897);
        return Rounded(dNumerator / Rounded(Denominator(fCentre)) / m_fDivisor);
    }

    double Denominator(float v) const
    {
        return std::log(2 + 8 * std::pow(double{v / m_fRelative}, double{m_fBiasP}));
    }

    static Triple ToRGB(const Triple& pixel)
    {
        const auto [fY, fx, fy] = pixel;
        Triple xyz{Rounded(0.00001), fY, Rounded(0.00001)};
        if (fY > 0.00001 && fx > 0.00001 && fy > 0.00001) {
            xyz[0] = fY * fx / fy;
            xyz[2] = xyz[0] / fx - xyz[0] - fY;
        }
        return Product(TO_RGB, xyz);
    }

    static float Corrected(float v, float fGamma)
    {
        const float g = Rounded(fGamma - 0.2);
        const float e = Rounded(2 * 0.45 / g);
        float fStart = Rounded(0.018);
        float fSlope = 4.5F;
        if (g >= 2.1) {
            const float m = Rounded((g - 2) * 7.5);
            fStart = Rounded(0.018 / m);
            fSlope = Rounded(4.5 * m);
        } else if (g <= 1.9) {
            const float m = Rounded((2 - g) * 7.5);
            fStart = Rounded(0.018 * m);
            fSlope = Rounded(4.5 / m);
        }
        if (v <= fStart)
            return v * fSlope;
        const float fPower = std::abs(e - 1) < 0.00001 ? v : Rounded(std::pow(double{v}, double{e}));
        return Rounded(fPower * 1.099 - 0.099);
    }

    int m_nWidth, m_nHeight;
    float m_fMax;
    float m_fSumLog = 0, m_fBiasP = 0, m_fRelative = 0, m_fDivisor = 0;
    std::vector<Triple> m_vPixels; ///< Y, x, y
};

} // namespace

Bytes MapPlainly(const Picture& picture, float fExposure, float fGamma, float fMaxStart)
{
    PlainToneMapper mapper(picture, fMaxStart);
    mapper.Compress(fExposure);
    return mapper.ToBytes(fGamma);
}

} // namespace LS::Tests
