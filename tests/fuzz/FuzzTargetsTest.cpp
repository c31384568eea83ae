// The fuzz targets without a fuzzer: seeds, their beginnings, and mutants of them.
#include "tests/faults/Form.h"
#include "tests/faults/Mutation.h"
#include "tests/fuzz/Seeds.h"
#include "tests/fuzz/Targets.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <ostream>

using namespace LS::Tests;
using LS::Fuzz::NamedTarget;

namespace LS::Fuzz {

static void PrintTo(const NamedTarget& target, std::ostream* pStream)
{
    *pStream << target.szName;
}

} // namespace LS::Fuzz

namespace {

class FuzzTargets : public testing::TestWithParam<NamedTarget> {
protected:
    FuzzTargets() { LS::Fuzz::PrepareTargets(); }

    static void Run(const Bytes& input)
    {
        const Bytes copy(input.begin(),
                         input.end()); // of its exact size, so that a sanitizer sees what is read beyond
        EXPECT_EQ(0, GetParam().run(copy.data(), copy.size()));
    }
};

INSTANTIATE_TEST_SUITE_P(, FuzzTargets, testing::ValuesIn(LS::Fuzz::TARGETS),
                         [](const auto& target) { return std::string(target.param.szName); });

} // namespace

TEST_P(FuzzTargets, TakeSeedsAndMutants)
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::seconds(InForm(10, 600));
    const std::vector<Bytes> vSeeds = LS::Fuzz::Seeds(GetParam().szName);
    ASSERT_FALSE(vSeeds.empty());
    for (const Bytes& seed : vSeeds)
        Run(seed);
    std::mt19937 random(1);
    int nRuns = 0;
    for (; nRuns < InForm(3000, 200'000) && Clock::now() < end; ++nRuns)
        Run(Mutated(vSeeds[static_cast<std::size_t>(nRuns) % vSeeds.size()], random));
    std::printf("%s: %d mutants of %zu seeds\n", GetParam().szName, nRuns, vSeeds.size());
}

// What a fuzzer once found, each under the name of its target with something behind.
TEST_P(FuzzTargets, TakeWhatWasFoundBefore)
{
    for (const auto& entry : std::filesystem::directory_iterator(LS_FUZZ_FOUND))
        if (entry.path().filename().native().starts_with(GetParam().szName))
            Run(ReadBytes(entry.path()));
}
