// Finds the floats at which a display curve's byte rises.
#include "engine/ByteTable.h"

#include "engine/DisplayCurve.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace {

constexpr std::int32_t BITS_OF_ONE = std::bit_cast<std::int32_t>(1.0F);
constexpr auto NAN_BITS = std::bit_cast<std::int32_t>(std::numeric_limits<float>::quiet_NaN());

std::int32_t ByteOf(std::int32_t nFloatBits, const GammaCurve& curve)
{
    float fValue = curve.Apply(std::bit_cast<float>(nFloatBits));
    unsigned char nByte = 0;
    ClampTop({&fValue, 1});
    FloatToBytes({&fValue, 1}, &nByte);
    return nByte;
}

/// The entry for the floats of one cell that lie on one branch.
/// @param nFirst,nLast  the bit patterns of the first and the last of them
std::optional<std::int32_t> Entry(std::int32_t nFirst, std::int32_t nLast, const GammaCurve& curve)
{
    const std::int32_t nByte = ByteOf(nFirst, curve);
    const std::int32_t nRise = ByteOf(nLast, curve) - nByte;
    if (nRise == 0)
        return nByte << ByteCells::BITS;
    if (nRise != 1)
        return std::nullopt;
    while (nLast - nFirst > 1) {
        const std::int32_t nMiddle = nFirst + (nLast - nFirst) / 2;
        (ByteOf(nMiddle, curve) == nByte ? nFirst : nLast) = nMiddle;
    }
    return (nByte << ByteCells::BITS) + ByteCells::SIZE - nLast % ByteCells::SIZE;
}

/// The largest power of two whose byte is 0, and which lies on the line.
float Lowest(const GammaCurve& curve)
{
    float fLowest = 0.5F;
    while (fLowest > 1e-30F &&
           (fLowest > curve.fStart || ByteOf(std::bit_cast<std::int32_t>(fLowest), curve) > 0))
        fLowest /= 2;
    return fLowest;
}

} // namespace

std::optional<ByteTable> ByteTable::Make(const GammaCurve& curve)
{
    if (!(curve.fStart > 1e-20F && curve.fStart < 1 && curve.fSlope > 0 && curve.fSlope < 1e20F))
        return std::nullopt;
    if (ByteOf(NAN_BITS, curve) != 0)
        return std::nullopt; // an exponent next to 0, which makes 1 of everything
    ByteTable table;
    table.m_fLowest = Lowest(curve);
    table.m_fLineEnd = curve.fStart;
    table.m_nFirstCell = std::bit_cast<std::int32_t>(table.m_fLowest) >> ByteCells::BITS;
    const auto nLineEnd = std::bit_cast<std::int32_t>(curve.fStart);

    const auto add = [&](std::int32_t nFirst, std::int32_t nLast) {
        const auto nEntry = Entry(nFirst, nLast, curve);
        table.m_vnEntries.push_back(nEntry.value_or(0));
        return nEntry.has_value();
    };
    for (std::int32_t nCell = table.m_nFirstCell; nCell <= BITS_OF_ONE >> ByteCells::BITS; ++nCell) {
        const std::int32_t nFirst = nCell << ByteCells::BITS, nLast = nFirst + ByteCells::SIZE - 1;
        if (nFirst <= nLineEnd && !add(nFirst, std::min(nLast, nLineEnd)))
            return std::nullopt;
        if (nLast > nLineEnd && !add(std::max(nFirst, nLineEnd + 1), nLast))
            return std::nullopt;
        // A cell of one branch only, next to the other: keeps one entry more than cells up to there.
        if (nLast == nLineEnd)
            table.m_vnEntries.push_back(0);
    }
    return table;
}
