// Scaling and half precision: the kernels against their plain twins, bit for bit.
#include "HDRFile/HalfRow.h"
#include "HDRFile/ScaleRow.h"

#include "tests/support/Bits.h"
#include "tests/support/InstructionSets.h"

#include <bit>
#include <cstdint>
#include <random>
#include <vector>

namespace LS::Tests {

namespace {

/// For each sign and exponent the first and last mantissas, and those around each place where one of a half's
/// roundings, ties included, could begin: zeros, subnormals, infinities and what is no number are among them.
std::vector<float> BorderFloats()
{
    std::vector<float> vfValues;
    for (std::uint32_t nHead = 0; nHead < 512; ++nHead)
        for (std::uint32_t nBit = 0; nBit <= 23; ++nBit)
            for (const std::uint32_t nAround : {0xFFFFFFFFU, 0U, 1U})
                for (const std::uint32_t nOdd : {0U, 0x2000U}) {
                    const std::uint32_t nMantissa = ((1U << nBit) | nOdd) + nAround;
                    vfValues.push_back(std::bit_cast<float>(nHead << 23 | (nMantissa & 0x7FFFFF)));
                }
    return vfValues;
}

std::vector<float> RandomBits(std::size_t nCount)
{
    std::mt19937 random(5); // NOLINT(bugprone-random-generator-seed): the same floats each run
    std::vector<float> vfValues(nCount);
    for (float& f : vfValues)
        f = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    return vfValues;
}

void ExpectSameScaled(std::vector<float> vfRow)
{
    std::vector<float> vfExpected = vfRow;
    reference::ScaleRow(vfExpected);
    ScaleRow(vfRow);
    ExpectSameBits(vfExpected, vfRow);
}

void ExpectSameHalves(const std::vector<float>& vfRow)
{
    const std::size_t nWidth = vfRow.size() / 3;
    // What lies behind the row must stay as it is.
    std::vector<std::uint16_t> vnExpected(4 * nWidth + 8, 77), vnActual(vnExpected);
    reference::HalfRow(vfRow, std::span(vnExpected).first(4 * nWidth));
    HalfRow(vfRow, std::span(vnActual).first(4 * nWidth));
    ASSERT_EQ(vnExpected, vnActual) << "width " << nWidth;
}

} // namespace

TEST(ScaleRow, EqualsItsDefinition)
{
    ExpectSameScaled(BorderFloats());
    for (std::size_t nCount = 0; nCount <= 40; ++nCount)
        ExpectSameScaled(RandomBits(nCount));
}

TEST(HalfRow, EqualsOpenExrsTypeOnEveryInstructionSet)
{
    OnEveryInstructionSet([] {
        ExpectSameHalves(BorderFloats());
        for (std::size_t nWidth = 0; nWidth <= 40; ++nWidth)
            ExpectSameHalves(RandomBits(3 * nWidth));
    });
}

} // namespace LS::Tests
