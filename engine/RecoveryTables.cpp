// The two constant tables of response recovery.
#include "engine/RecoveryTables.h"

#include <cmath>
#include <cstddef>

namespace {

/// The double nearest to the decimal fraction: the whole number is exact, so only the quotient is rounded.
double RoundedToSixDecimals(double dValue)
{
    return std::round(dValue * 1e6) / 1e6;
}

std::array<double, CURVE_ENTRIES> MakeBiweightTable()
{
    std::array<double, CURVE_ENTRIES> table{};
    for (std::size_t z = 0; z < CURVE_ENTRIES; ++z) {
        const double dDistance = (2.0 * static_cast<double>(z) - 255.0) / 255.0;
        const double dRoot = 1.0 - dDistance * dDistance;
        table[z] = RoundedToSixDecimals(dRoot * dRoot);
    }
    return table;
}

std::array<float, CURVE_ENTRIES> MakeLogTable()
{
    std::array<float, CURVE_ENTRIES> table{};
    for (std::size_t i = 0; i < CURVE_ENTRIES; ++i)
        table[i] = static_cast<float>(RoundedToSixDecimals(std::log(static_cast<double>(i + 1))));
    return table;
}

} // namespace

const std::array<double, CURVE_ENTRIES>& BiweightTable()
{
    static const std::array<double, CURVE_ENTRIES> table = MakeBiweightTable();
    return table;
}

const std::array<float, CURVE_ENTRIES>& LogTable()
{
    static const std::array<float, CURVE_ENTRIES> table = MakeLogTable();
    return table;
}
