// Damage to files, the same for the same seed.
#include "tests/faults/Mutation.h"

#include <algorithm>
#include <cstddef>

namespace LS::Tests {

namespace {

/// Below nEnd, and 0 if that is 0. Spelled out, since the distributions of the library may differ.
std::size_t Below(std::size_t nEnd, std::mt19937& random)
{
    return nEnd == 0 ? 0 : random() % nEnd;
}

/// A place; most faults are in the headers.
std::size_t Place(const Bytes& bytes, std::mt19937& random)
{
    const std::size_t nHead = std::min<std::size_t>(bytes.size(), 256);
    return Below(random() % 2 ? nHead : bytes.size(), random);
}

void SetNumber(Bytes& bytes, std::mt19937& random)
{
    constexpr std::uint32_t NUMBERS[] = {0,          1,          0x7F,      0x80,   0xFF,
                                         0x100,      0x7FFF,     0x8000,    0xFFFF, 0x10000000,
                                         0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    const std::uint32_t nNumber = NUMBERS[Below(std::size(NUMBERS), random)];
    const std::size_t nBytes = std::size_t{1} << Below(3, random);
    const bool bLowFirst = random() % 2;
    const std::size_t nPlace = Place(bytes, random);
    for (std::size_t i = 0; i < nBytes && nPlace + i < bytes.size(); ++i) {
        const std::size_t nShift = 8 * (bLowFirst ? i : nBytes - 1 - i);
        bytes[nPlace + i] = static_cast<unsigned char>(nNumber >> nShift);
    }
}

void MovePiece(Bytes& bytes, std::mt19937& random)
{
    const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(Place(bytes, random));
    const auto nLeft = static_cast<std::size_t>(bytes.end() - first);
    const auto last = first + static_cast<std::ptrdiff_t>(Below(std::min<std::size_t>(nLeft, 64), random));
    switch (random() % 3) {
    case 0:
        bytes.erase(first, last);
        break;
    case 1:
        std::fill(first, last, 0);
        break;
    default: {
        const Bytes piece(first, last);
        bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(Place(bytes, random)), piece.begin(),
                     piece.end());
    }
    }
}

void DamageOnce(Bytes& bytes, std::mt19937& random)
{
    if (bytes.empty())
        return;
    switch (random() % 8) {
    case 0:
        bytes.resize(Below(bytes.size(), random));
        break;
    case 1:
    case 2:
        bytes[Place(bytes, random)] ^= static_cast<unsigned char>(1U << (random() % 8));
        break;
    case 3:
        bytes[Place(bytes, random)] = static_cast<unsigned char>(random());
        break;
    case 4:
    case 5:
        SetNumber(bytes, random);
        break;
    default:
        MovePiece(bytes, random);
    }
}

} // namespace

Bytes Mutated(Bytes bytes, std::mt19937& random)
{
    for (auto n = 1 + random() % 4; n > 0; --n)
        DamageOnce(bytes, random);
    return bytes;
}

} // namespace LS::Tests
