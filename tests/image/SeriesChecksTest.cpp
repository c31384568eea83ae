// The order of a series and its checks.
#include "image/SeriesChecks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

TEST(FileNameLess, OrdersByNameAndCase)
{
    const std::vector<std::wstring> vExpected = {
        L"/a/IMG_9.jpg", L"/c/Zebra.jpg",         L"/z/img_10.jpg",  L"/b/img_2.jpg",     L"/a/img_3.jpg",
        L"plain.jpg",    L"/a/\u00e9t\u00e9.jpg", L"/c/\uFB01n.jpg", L"/a/\U0001F600.jpg"};
    std::vector<std::wstring> vPaths(vExpected.rbegin(), vExpected.rend());
    std::sort(vPaths.begin(), vPaths.end(), FileNameLess);
    EXPECT_EQ(vExpected, vPaths);
    EXPECT_FALSE(FileNameLess(L"/a/x.jpg", L"/b/x.jpg") || FileNameLess(L"/b/x.jpg", L"/a/x.jpg"));
}

TEST(FindEqualExposures, Table)
{
    const struct {
        const char* szName;
        std::vector<ExposureSetting> exposures;
        std::optional<IndexPair> expected;
    } cases[] = {
        {"same shutter only", {{0.5F, 8.0F}, {0.5F, 4.0F}}, {}},
        {"swapped values", {{2.0F, 8.0F}, {8.0F, 2.0F}}, {}},
        // The pair of the lowest image counts, not the pair that is complete first.
        {"nested pairs", {{1.0F, 8.0F}, {2.0F, 8.0F}, {2.0F, 8.0F}, {1.0F, 8.0F}}, IndexPair{0, 3}},
        {"alike to six decimals", {{0.0000011F, 8.0F}, {0.0000012F, 8.0F}}, IndexPair{0, 1}},
        {"different in the sixth", {{0.000001F, 8.0F}, {0.000002F, 8.0F}}, {}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.expected, FindEqualExposures(c.exposures)) << c.szName;
}

TEST(FindDifferentSizes, GivesTheFirstThatDiffers)
{
    using Sizes = std::vector<PixelSize>;
    EXPECT_EQ(std::nullopt, FindDifferentSizes(Sizes{{3, 2}, {3, 2}, {3, 2}}));
    EXPECT_EQ((IndexPair{0, 2}), FindDifferentSizes(Sizes{{3, 2}, {3, 2}, {4, 2}}));
    EXPECT_EQ((IndexPair{0, 1}), FindDifferentSizes(Sizes{{3, 2}, {3, 1}, {4, 2}}));
}

} // namespace
