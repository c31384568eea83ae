// Packing a row: the kernel against its plain twin.
#include "image/PackRow.h"

#include "tests/support/InstructionSets.h"

#include <cstddef>
#include <memory>
#include <random>
#include <vector>

TEST(PackRow, EqualsItsDefinitionOnEveryInstructionSet)
{
    std::mt19937 random(3); // NOLINT(bugprone-random-generator-seed): the same bytes each run
    for (std::size_t nWidth = 0; nWidth <= 40; ++nWidth)
        for (const bool bAlpha : {false, true}) {
            // On the heap and of exact size, so that the sanitizers see a read behind the row.
            const auto pRGB = std::make_unique<unsigned char[]>(3 * nWidth);
            const auto pAlpha = std::make_unique<unsigned char[]>(nWidth);
            for (std::size_t i = 0; i < 3 * nWidth; ++i)
                pRGB[i] = static_cast<unsigned char>(random());
            for (std::size_t x = 0; x < nWidth; ++x)
                pAlpha[x] = static_cast<unsigned char>(random());
            LS::Tests::OnEveryInstructionSet([&] {
                std::vector<unsigned char> expected(4 * nWidth), packed(expected);
                reference::PackRow(pRGB.get(), bAlpha ? pAlpha.get() : nullptr, expected);
                PackRow(pRGB.get(), bAlpha ? pAlpha.get() : nullptr, packed);
                ASSERT_EQ(expected, packed) << "width " << nWidth << ", alpha " << bAlpha;
            });
        }
}
