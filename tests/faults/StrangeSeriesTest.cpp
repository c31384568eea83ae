// Few and many images, narrow and wide ones, exposures that no camera has: what is merged, and what is
// refused.
#include "tests/faults/Form.h"
#include "tests/faults/MergeFixture.h"
#include "tests/support/FailureRecorder.h"
#include "tests/support/RgbeReader.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace LS::Tests;

namespace {

class StrangeSeries : public MergeFixture {
protected:
    bool Recovers()
    {
        OwnedCurves curves;
        return !Create(curves).empty();
    }

    /// Merges the series with the standard curve, and looks at the sizes of what comes. @return whether it
    /// merges
    bool MergesWhole()
    {
        const Results results = ResultsOfSeries();
        if (results.preview.empty())
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
        // Ten stops between the first image and the last, but no more than two from one to the next.
        const double dFactor = nImages > 1 ? std::min(4.0, std::pow(1024, 1.0 / (nImages - 1))) : 1;
        Photograph(60, 40, nImages, dFactor);
        EXPECT_EQ(bRecovers, Recovers());
        EXPECT_TRUE(Merge());
    }
}

TEST_F(StrangeSeries, OfTheSmallestImages)
{
    for (std::int32_t nWidth = 1; nWidth <= 12; ++nWidth)
        for (std::int32_t nHeight = 1; nHeight <= 12; ++nHeight) {
            SCOPED_TRACE(testing::Message() << nWidth << " x " << nHeight);
            TakeGradients(nWidth, nHeight, 3);
            EXPECT_TRUE(MergesWhole());
            EXPECT_FALSE(Recovers() && (nWidth < 10 || nHeight < 10));
        }
}

TEST_F(StrangeSeries, AtTheLimitsOfFormatsAndWays)
{
    const struct {
        std::int32_t nWidth, nHeight;
        bool bMerges;
    } cases[] = {{7, 20, true},    {8, 20, true},    {32767, 2, true}, {32768, 2, true},
                 {1500, 12, true}, {1501, 12, true}, {12, 1500, true}, {12, 1501, true},
                 {4, 2001, false}, {5, 2001, true},  {1, 1501, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.nWidth << " x " << c.nHeight);
        TakeGradients(c.nWidth, c.nHeight, 2);
        EXPECT_EQ(c.bMerges, MergesWhole());
    }
}

// Each gives the same bytes again or a clear failure.
TEST_F(StrangeSeries, OfAbsurdExposures)
{
    using Limits = std::numeric_limits<float>;
    Photograph(40, 30, 3, 4);
    const SyntheticSeries usual = series;
    int nMerged = 0;
    for (const float fValue : {0.0F, -1.0F, Limits::denorm_min(), 1e30F, Limits::max(), Limits::lowest(),
                               Limits::infinity(), Limits::quiet_NaN()})
        for (const bool bAll : {false, true})
            for (auto SyntheticSeries::*pMember : {&SyntheticSeries::vfShutters, &SyntheticSeries::vfStops}) {
                SCOPED_TRACE(testing::Message() << fValue << (bAll ? " in all" : " in one"));
                series = usual;
                std::fill_n((series.*pMember).begin() + !bAll, bAll ? 3 : 1, fValue);
                const Results results = ResultsOfSeries();
                EXPECT_EQ(results, ResultsOfSeries());
                nMerged += !results.preview.empty();
                if (!bAll || IsLongForm()) // solving takes half a second
                    Recovers();
            }
    EXPECT_LT(10, nMerged);
}
