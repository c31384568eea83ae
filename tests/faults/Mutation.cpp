// Damage to files, the same for the same seed.
#include "tests/faults/Mutation.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace LS::Tests {

namespace {

/// A place; most faults are in the headers. Spelled out, since the distributions of the library may differ.
std::ptrdiff_t Place(const Bytes& bytes, std::mt19937& random)
{
    const std::size_t nEnd = random() % 2 ? std::min<std::size_t>(bytes.size(), 256) : bytes.size();
    return static_cast<std::ptrdiff_t>(random() % nEnd);
}

void SetNumber(Bytes& bytes, std::ptrdiff_t nPlace, std::mt19937& random)
{
    constexpr std::uint32_t NUMBERS[] = {0, 1, 0x7F, 0xFF, 0x7FFF, 0xFFFF, 0x10000, 0x7FFFFFFF, 0xFFFFFFFF};
    const std::uint32_t nNumber = NUMBERS[random() % std::size(NUMBERS)];
    const std::ptrdiff_t nBytes = std::ptrdiff_t{1} << random() % 3;
    const bool bLowFirst = random() % 2;
    for (std::ptrdiff_t i = 0; i < nBytes && nPlace + i < std::ssize(bytes); ++i)
        bytes[static_cast<std::size_t>(nPlace + i)] =
            static_cast<unsigned char>(nNumber >> 8 * (bLowFirst ? i : nBytes - 1 - i));
}

void DamageOnce(Bytes& bytes, std::mt19937& random)
{
    const std::ptrdiff_t nPlace = Place(bytes, random);
    const auto first = bytes.begin() + nPlace;
    const auto last = first + std::min<std::ptrdiff_t>(bytes.end() - first, random() % 64);
    const Bytes piece(first, last);
    switch (random() % 6) {
    case 0:
        return bytes.resize(static_cast<std::size_t>(nPlace));
    case 1:
        *first ^= static_cast<unsigned char>(1U << random() % 8);
        return;
    case 2:
        bytes.erase(first, last);
        return;
    case 3:
        bytes.insert(bytes.begin() + Place(bytes, random), piece.begin(), piece.end());
        return;
    default:
        return SetNumber(bytes, nPlace, random);
    }
}

} // namespace

Bytes Mutated(Bytes bytes, std::mt19937& random)
{
    for (auto n = 1 + random() % 4; n > 0 && !bytes.empty(); --n)
        DamageOnce(bytes, random);
    return bytes;
}

} // namespace LS::Tests
