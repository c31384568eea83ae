// The order of a series and its checks.
#include "image/SeriesChecks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

TEST(FileNameLess, OrdersByNameAndCase)
{
    std::vector<std::wstring> vPaths = {L"/b/img_2.jpg",      L"/z/img_10.jpg",  L"/a/img_3.jpg",
                                        L"plain.jpg",         L"/a/IMG_9.jpg",   L"/a/\u00e9t\u00e9.jpg",
                                        L"/a/\U0001F600.jpg", L"/c/\uFB01n.jpg", L"/c/Zebra.jpg"};
    std::sort(vPaths.begin(), vPaths.end(), FileNameLess);
    const std::vector<std::wstring> vExpected = {
        L"/a/IMG_9.jpg", L"/c/Zebra.jpg",         L"/z/img_10.jpg",  L"/b/img_2.jpg",     L"/a/img_3.jpg",
        L"plain.jpg",    L"/a/\u00e9t\u00e9.jpg", L"/c/\uFB01n.jpg", L"/a/\U0001F600.jpg"};
    EXPECT_EQ(vExpected, vPaths);
}

TEST(FileNameLess, FoldersPlayNoPart)
{
    EXPECT_FALSE(FileNameLess(L"/a/x.jpg", L"/b/x.jpg"));
    EXPECT_FALSE(FileNameLess(L"/b/x.jpg", L"/a/x.jpg"));
    EXPECT_TRUE(FileNameLess(L"/z/x", L"/a/x.jpg"));
}

TEST(FindEqualExposures, Table)
{
    const struct {
        const char* szName;
        std::vector<ExposureSetting> exposures;
        std::optional<IndexPair> expected;
    } cases[] = {
        {"none", {}, {}},
        {"one", {{0.5F, 8.0F}}, {}},
        {"same shutter only", {{0.5F, 8.0F}, {0.5F, 4.0F}}, {}},
        {"same aperture only", {{0.5F, 8.0F}, {0.25F, 8.0F}}, {}},
        {"swapped values", {{2.0F, 8.0F}, {8.0F, 2.0F}}, {}},
        {"both", {{0.5F, 8.0F}, {0.5F, 8.0F}}, IndexPair{0, 1}},
        {"apart", {{1.0F, 8.0F}, {0.5F, 8.0F}, {0.25F, 8.0F}, {0.5F, 8.0F}}, IndexPair{1, 3}},
        {"three alike", {{1.0F, 8.0F}, {1.0F, 8.0F}, {1.0F, 8.0F}}, IndexPair{0, 1}},
        // The pair of the lowest image counts, not the pair that is complete first.
        {"nested pairs", {{1.0F, 8.0F}, {2.0F, 8.0F}, {2.0F, 8.0F}, {1.0F, 8.0F}}, IndexPair{0, 3}},
        {"alike to six decimals", {{0.0000011F, 8.0F}, {0.0000012F, 8.0F}}, IndexPair{0, 1}},
        {"different in the sixth", {{0.000001F, 8.0F}, {0.000002F, 8.0F}}, {}},
        {"missing tags", {{-1.0F, -1.0F}, {-1.0F, -1.0F}}, IndexPair{0, 1}},
        {"zeros of two signs", {{0.0F, 8.0F}, {-0.0F, 8.0F}}, {}},
        {"longest texts", {{-3.4e38F, -3.4e38F}, {-3.4e38F, -3.3e38F}}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        EXPECT_EQ(c.expected, FindEqualExposures(c.exposures));
    }
}

/// The definition: each image with each other one.
std::optional<IndexPair> EqualExposuresByPairs(const std::vector<ExposureSetting>& exposures)
{
    for (std::size_t i = 0; i < exposures.size(); ++i)
        for (std::size_t j = 0; j < exposures.size(); ++j)
            if (i != j && exposures[i].exposureTime == exposures[j].exposureTime &&
                exposures[i].fNumber == exposures[j].fNumber)
                return IndexPair{i, j};
    return std::nullopt;
}

TEST(FindEqualExposures, FindsThePairThatComparingAllFinds)
{
    std::mt19937 random(7);
    int nFound = 0;
    for (int nRound = 0; nRound < 2000; ++nRound) {
        std::vector<ExposureSetting> exposures(random() % 8);
        for (ExposureSetting& exposure : exposures)
            exposure = {static_cast<float>(1 + random() % 4), static_cast<float>(1 + random() % 4)};
        const auto expected = EqualExposuresByPairs(exposures);
        ASSERT_EQ(expected, FindEqualExposures(exposures)) << "round " << nRound;
        nFound += expected.has_value();
    }
    EXPECT_GT(nFound, 200);
    EXPECT_LT(nFound, 1800);
}

TEST(FindEqualExposures, IsNotQuadratic)
{
    // Comparing all pairs would take minutes.
    std::vector<ExposureSetting> exposures;
    exposures.reserve(100'001);
    for (int i = 0; i < 100'000; ++i)
        exposures.push_back({static_cast<float>(i), 8.0F});
    exposures.push_back({7.0F, 8.0F});
    EXPECT_EQ((IndexPair{7, 100'000}), FindEqualExposures(exposures));
}

TEST(FindDifferentSizes, Table)
{
    const struct {
        const char* szName;
        std::vector<PixelSize> sizes;
        std::optional<IndexPair> expected;
    } cases[] = {
        {"none", {}, {}},
        {"one", {{3, 2}}, {}},
        {"equal", {{3, 2}, {3, 2}, {3, 2}}, {}},
        {"other width", {{3, 2}, {3, 2}, {4, 2}}, IndexPair{0, 2}},
        {"other height", {{3, 2}, {3, 1}, {4, 2}}, IndexPair{0, 1}},
        {"turned", {{3, 2}, {2, 3}}, IndexPair{0, 1}},
        {"first one differs", {{1, 1}, {3, 2}, {3, 2}}, IndexPair{0, 1}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.szName);
        EXPECT_EQ(c.expected, FindDifferentSizes(c.sizes));
    }
}

} // namespace
