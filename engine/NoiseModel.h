// How sharply a pixel value is known.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>

/// Spreads a value over the 8-bit values around it: a triangle of area 1 whose width grows with the square
/// root of the value, as photon noise does.
class NoiseModel {
public:
    /// Throws std::domain_error for what is no value from 0 to 255.
    explicit NoiseModel(float fValue) : m_dValue(fValue)
    {
        if (!(fValue >= 0 && fValue <= LARGEST))
            throw std::domain_error("no 8-bit value");
        const auto fSigma = static_cast<float>(std::max(0.5, std::sqrt(m_dValue) * 0.25));
        m_dSigma = fSigma;
        m_dPeak = 1.0 / m_dSigma;
        m_nFirst = static_cast<std::int32_t>(std::max(0.0, std::floor(m_dValue - m_dSigma)));
        m_nLast = static_cast<std::int32_t>(std::min<double>(LARGEST, std::ceil(m_dValue + m_dSigma)));
    }

    std::int32_t First() const { return m_nFirst; } ///< the lowest 8-bit value in question
    std::int32_t Last() const { return m_nLast; }   ///< the highest

    /// The share of an 8-bit value, not below 0.
    double At(std::int32_t nValue) const
    {
        return std::max(0.0, (1.0 - std::fabs(m_dValue - nValue) / m_dSigma) * m_dPeak);
    }

private:
    static constexpr float LARGEST = 255.0F;

    double m_dValue;
    double m_dSigma;
    double m_dPeak;
    std::int32_t m_nFirst;
    std::int32_t m_nLast;
};
