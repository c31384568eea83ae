// Few and many images, narrow and wide ones: what is recovered, merged and saved, and what is refused.
#include "Util/FailureLog.h"
#include "Util/PixelBuffer.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "tests/faults/Form.h"
#include "tests/faults/MergeFixture.h"
#include "tests/support/RgbeReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

using namespace LS::Tests;

namespace {

class Sizes : public testing::Test {
protected:
    void SetUp() override
    {
        m_previous = LS::Util::SetFailureSink([](const std::string&) {});
    }
    void TearDown() override
    {
        LS::Util::SetFailureSink(m_previous);
        ResetWorkspace();
    }

    /// Saves the merged image in all formats and maps it, and looks at the sizes of what comes.
    static void ExpectResultOf(const SyntheticSeries& series)
    {
        const TempFolder folder;
        const auto nPixels =
            static_cast<std::size_t>(series.nWidth) * static_cast<std::size_t>(series.nHeight);
        ASSERT_EQ(12 * nPixels, std::filesystem::file_size(FloatCachePath()));
        for (std::int32_t nFormat = 0; nFormat < 3; ++nFormat)
            EXPECT_TRUE(SaveHDRFile(folder.File(std::to_string(nFormat)).c_str(), nFormat, nullptr));
        EXPECT_EQ(nPixels, ReadRgbe(ReadBytes(folder.File("1"))).vPixels.size());
        ActingProgress target(1000, [] {});
        ProgbarSetter setter = target.Setter(); // with a progress the road depends on the size
        std::int32_t nWidth = 0, nHeight = 0;
        EXPECT_TRUE(LS::Util::PixelBuffer(ToneMapFull(0, 2.2F, &nWidth, &nHeight, &setter)));
        EXPECT_EQ(series.nWidth, nWidth);
        EXPECT_EQ(series.nHeight, nHeight);
    }

private:
    LS::Util::FailureSink m_previous;
};

} // namespace

TEST_F(Sizes, NumbersOfImages)
{
    const struct {
        int nImages;
        bool bRecovers;
    } cases[] = {{1, false}, {2, true}, {19, true}, {20, true}, {60, true}, {255, true}, {300, false}};
    for (const auto& c : cases) {
        if (c.nImages == 255 && !IsLongForm())
            continue;
        SCOPED_TRACE(c.nImages);
        const TempFolder folder;
        // Ten stops between the first image and the last, but no more than two from one to the next.
        const double dFactor = c.nImages > 1 ? std::min(4.0, std::pow(1024, 1.0 / (c.nImages - 1))) : 1;
        const SyntheticSeries series =
            Photograph(folder, RenderScene(60, 40), {}, Bracket(c.nImages, dFactor));
        EXPECT_EQ(c.bRecovers, Merge(series, Curves::Recovered).has_value());
        EXPECT_TRUE(Merge(series, Curves::Standard));
    }
}

TEST_F(Sizes, FlatImagesSpanNoRange)
{
    const TempFolder folder;
    SyntheticSeries series = PlainSeries(folder, 48, 36, 2);
    for (const char* szName : {"plain0.tmp", "plain1.tmp"})
        WriteElements(folder.File(szName), Bytes(4UL * 48 * 36, szName[5] == '0' ? 60 : 190));
    EXPECT_FALSE(Merge(series, Curves::Recovered));
    EXPECT_TRUE(Merge(series, Curves::Standard));
}

TEST_F(Sizes, OfTheSmallestImages)
{
    for (std::int32_t nWidth = 1; nWidth <= 12; ++nWidth)
        for (std::int32_t nHeight = 1; nHeight <= 12; ++nHeight) {
            SCOPED_TRACE(testing::Message() << nWidth << " x " << nHeight);
            const TempFolder folder;
            const SyntheticSeries series = PlainSeries(folder, nWidth, nHeight, 3);
            ASSERT_TRUE(Merge(series, Curves::Standard));
            ExpectResultOf(series);
            const bool bRecovered = Merge(series, Curves::Recovered).has_value();
            if (nWidth < 10 || nHeight < 10) {
                EXPECT_FALSE(bRecovered);
            }
        }
}

TEST_F(Sizes, AtTheLimitsOfFormatsAndRoads)
{
    const struct {
        std::int32_t nWidth, nHeight;
        bool bMerges;
    } cases[] = {
        {7, 20, true},    {8, 20, true},    {32767, 2, true},   {32768, 2, true},   {1499, 12, true},
        {1500, 12, true}, {1501, 12, true}, {12, 499, true},    {12, 501, true},    {12, 1499, true},
        {12, 1500, true}, {12, 1501, true}, {1, 1501, false},   {2, 2001, false},   {3, 2001, false},
        {4, 2001, false}, {5, 2001, true},  {1500, 1500, true}, {1501, 1501, true},
    };
    for (const auto& c : cases) {
        if (c.nWidth * c.nHeight > 1'000'000 && !IsLongForm())
            continue;
        SCOPED_TRACE(testing::Message() << c.nWidth << " x " << c.nHeight);
        const TempFolder folder;
        const SyntheticSeries series = PlainSeries(folder, c.nWidth, c.nHeight, 2);
        const bool bMerged = Merge(series, Curves::Standard).has_value();
        EXPECT_EQ(c.bMerges, bMerged);
        if (bMerged)
            ExpectResultOf(series);
    }
}
