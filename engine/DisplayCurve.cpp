// The display's transfer curve, and the way to 8 bits.
#include "engine/DisplayCurve.h"

#include "engine/lanes/Kernels.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

constexpr double TOP = 0.98; // of the byte range, so that nothing burns out to full white

unsigned char ToByte(float fValue)
{
    // Truncate, don't round: the top byte is then 249, as the cap intends.
    const double dByte = fValue * 255.0;
    if (!(dByte > 0.0)) // NaN, too
        return 0;
    return static_cast<unsigned char>(std::min(dByte, 255.0));
}

} // namespace

GammaCurve::GammaCurve(float fGamma)
{
    const auto fG = static_cast<float>(fGamma - 0.2);
    fExponent = static_cast<float>(2.0 * 0.45 / fG);
    // Against doubles: the float nearest to 2.1 lies below it and keeps the plain line.
    if (fG >= 2.1) {
        const auto fM = static_cast<float>((fG - 2.0) * 7.5);
        fStart = static_cast<float>(0.018 / fM);
        fSlope = static_cast<float>(4.5 * fM);
    } else if (fG <= 1.9) {
        const auto fM = static_cast<float>((2.0 - fG) * 7.5);
        fStart = static_cast<float>(0.018 * fM);
        fSlope = static_cast<float>(4.5 / fM);
    }
}

float GammaCurve::Apply(float fValue) const
{
    if (fValue <= fStart)
        return fValue * fSlope;
    return static_cast<float>(FastPow(fValue, fExponent) * 1.099 - 0.099);
}

float FastPow(float fX, float fExponent)
{
    const auto isNear = [fExponent](double dWhole) { return std::fabs(fExponent - dWhole) < 0.00001; };
    if (isNear(0))
        return 1;
    if (isNear(1))
        return fX;
    if (isNear(2))
        return fX * fX;
    if (isNear(3))
        return fX * fX * fX;
    return static_cast<float>(std::pow(static_cast<double>(fX), static_cast<double>(fExponent)));
}

void GammaCorrect(std::span<float> vfValues, float fGamma)
{
    const GammaCurve curve(fGamma);
    for (float& fValue : vfValues)
        fValue = curve.Apply(fValue);
}

void ClampTop(std::span<float> vfValues)
{
    for (float& fValue : vfValues)
        if (fValue > TOP)
            fValue = static_cast<float>(TOP);
}

void FloatToBytes(std::span<const float> vfValues, unsigned char* pBytes)
{
    std::transform(vfValues.begin(), vfValues.end(), pBytes, ToByte);
}

DisplayBytes::DisplayBytes(float fGamma)
    : m_fGamma(fGamma), m_table(LS::Lanes::Kernels() ? ByteTable::Make(GammaCurve(fGamma)) : std::nullopt)
{
}

void DisplayBytes::Convert(std::span<float> vfValues, unsigned char* pBytes) const
{
    const auto* pKernels = LS::Lanes::Kernels();
    const std::size_t nDone =
        pKernels && m_table ? pKernels->ToBytes(vfValues.data(), vfValues.size(), m_table->Cells(), pBytes)
                            : 0;
    const std::span<float> vfRest = vfValues.subspan(nDone);
    GammaCorrect(vfRest, m_fGamma);
    ClampTop(vfRest);
    FloatToBytes(vfRest, pBytes + nDone);
}
