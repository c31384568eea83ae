// Few and many images, narrow and wide ones, exposures that no camera has: what is merged, and what is
// refused.
#include "engine/HDRWorkspace.h"
#include "tests/faults/Form.h"
#include "tests/faults/MergeFixture.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/RgbeReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace LS::Tests;

namespace {

class StrangeSeries : public testing::Test {
protected:
    ~StrangeSeries() override { ResetWorkspace(); }

    /// Merges a series with the standard curve, and looks at the sizes of what comes. @return whether it
    /// merges
    static bool MergesWhole(const SyntheticSeries& series)
    {
        const Results results = ResultsOf(series);
        if (!results.preview)
            return false;
        const auto nPixels =
            static_cast<std::size_t>(series.nWidth) * static_cast<std::size_t>(series.nHeight);
        EXPECT_EQ(nPixels, ReadRgbe(results.files[1]).vPixels.size());
        EXPECT_EQ(3 * nPixels, results.mapped.size());
        return true;
    }

    FailureRecorder m_silence;
};

} // namespace

TEST_F(StrangeSeries, OfFewAndManyImages)
{
    const std::pair<int, bool> cases[] = {{1, false}, {2, true},   {19, true},  {20, true},
                                          {60, true}, {255, true}, {300, false}};
    for (const auto& [nImages, bRecovers] : cases) {
        if (nImages == 255 && !IsLongForm())
            continue;
        SCOPED_TRACE(nImages);
        const TempFolder folder;
        // Ten stops between the first image and the last, but no more than two from one to the next.
        const double dFactor = nImages > 1 ? std::min(4.0, std::pow(1024, 1.0 / (nImages - 1))) : 1;
        const SyntheticSeries series = Photograph(folder, RenderScene(60, 40), {}, Bracket(nImages, dFactor));
        EXPECT_EQ(bRecovers, Merge(series, Curves::Recovered).has_value());
        EXPECT_TRUE(Merge(series, Curves::Standard));
    }
}

TEST_F(StrangeSeries, OfFlatImages)
{
    const TempFolder folder;
    SyntheticSeries series = PlainSeries(folder, 48, 36, 2);
    for (const char* szName : {"plain0.tmp", "plain1.tmp"})
        WriteElements(folder.File(szName), Bytes(4UL * 48 * 36, szName[5] == '0' ? 60 : 190));
    EXPECT_FALSE(Merge(series, Curves::Recovered)) << "for want of range";
    EXPECT_TRUE(Merge(series, Curves::Standard));
}

TEST_F(StrangeSeries, OfTheSmallestImages)
{
    for (std::int32_t nWidth = 1; nWidth <= 12; ++nWidth)
        for (std::int32_t nHeight = 1; nHeight <= 12; ++nHeight) {
            SCOPED_TRACE(testing::Message() << nWidth << " x " << nHeight);
            const TempFolder folder;
            const SyntheticSeries series = PlainSeries(folder, nWidth, nHeight, 3);
            EXPECT_TRUE(MergesWhole(series));
            const bool bRecovered = Merge(series, Curves::Recovered).has_value();
            EXPECT_FALSE(bRecovered && (nWidth < 10 || nHeight < 10));
        }
}

TEST_F(StrangeSeries, AtTheLimitsOfFormatsAndWays)
{
    const struct {
        std::int32_t nWidth, nHeight;
        bool bMerges;
    } cases[] = {
        {7, 20, true},    {8, 20, true},    {32767, 2, true}, {32768, 2, true},   {1500, 12, true},
        {1501, 12, true}, {12, 1500, true}, {12, 1501, true}, {4, 2001, false},   {5, 2001, true},
        {12, 499, true},  {12, 501, true},  {1, 1501, false}, {1501, 1501, true},
    };
    for (const auto& c : cases) {
        if (c.nWidth * c.nHeight > 1'000'000 && !IsLongForm())
            continue;
        SCOPED_TRACE(testing::Message() << c.nWidth << " x " << c.nHeight);
        const TempFolder folder;
        EXPECT_EQ(c.bMerges, MergesWhole(PlainSeries(folder, c.nWidth, c.nHeight, 2)));
    }
}

// Each gives the same bytes again or a clear failure.
TEST_F(StrangeSeries, OfAbsurdExposures)
{
    using Limits = std::numeric_limits<float>;
    const TempFolder folder;
    const SyntheticSeries usual = Photograph(folder, RenderScene(40, 30), {}, Bracket(3, 4));
    int nMerged = 0;
    for (const float fValue :
         {0.0F, -0.0F, -1.0F, Limits::denorm_min(), Limits::min(), 1e-30F, 1e30F, Limits::max(),
          Limits::lowest(), Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()})
        for (const bool bAll : {false, true})
            for (auto SyntheticSeries::*pMember : {&SyntheticSeries::vfShutters, &SyntheticSeries::vfStops}) {
                SCOPED_TRACE(testing::Message() << fValue << (bAll ? " in all" : " in one"));
                SyntheticSeries series = usual;
                std::fill_n((series.*pMember).begin() + 1, bAll ? 2 : 1, fValue);
                if (bAll)
                    (series.*pMember)[0] = fValue;
                const Results results = ResultsOf(series);
                EXPECT_EQ(results, ResultsOf(series));
                nMerged += results.preview.has_value();
                if (!bAll || IsLongForm()) // solving takes half a second
                    Merge(series, Curves::Recovered);
            }
    EXPECT_LT(10, nMerged);
}
