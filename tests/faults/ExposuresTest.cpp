// Exposures that no camera has, in one row or in all: each gives defined bytes or a clear failure.
#include "Util/FailureLog.h"
#include "Util/PixelBuffer.h"
#include "engine/HDRRoutine.h"
#include "engine/HDRWorkspace.h"
#include "tests/faults/Form.h"
#include "tests/faults/MergeFixture.h"
#include "tests/support/RgbeReader.h"

#include <gtest/gtest.h>

#include <limits>

using namespace LS::Tests;

namespace {

/// All that comes of a merge; empty parts where a step failed.
struct Results {
    std::optional<Bytes> preview;
    Bytes exr, rgbe, tiff, mapped;

    bool operator==(const Results&) const = default;
};

Results ResultsOf(const SyntheticSeries& series)
{
    const TempFolder folder;
    Results results;
    results.preview = Merge(series, Curves::Standard);
    if (!results.preview)
        return results;
    Bytes* const files[] = {&results.exr, &results.rgbe, &results.tiff};
    for (std::int32_t nFormat = 0; nFormat < 3; ++nFormat) {
        const std::string sPath = folder.File(std::to_string(nFormat));
        EXPECT_TRUE(SaveHDRFile(sPath.c_str(), nFormat, nullptr));
        *files[nFormat] = ReadBytes(sPath);
    }
    std::int32_t nWidth = 0, nHeight = 0;
    const LS::Util::PixelBuffer pPixels(ToneMapFull(0, 2.2F, &nWidth, &nHeight, nullptr));
    if (pPixels)
        results.mapped.assign(pPixels.get(), pPixels.get() + std::ptrdiff_t{3} * nWidth * nHeight);
    return results;
}

} // namespace

TEST(AbsurdExposures, GiveTheSameBytesAgainOrAClearFailure)
{
    using Limits = std::numeric_limits<float>;
    const float fValues[] = {0.0F,
                             -0.0F,
                             -1.0F,
                             Limits::denorm_min(),
                             Limits::min(),
                             1e-30F,
                             1e30F,
                             Limits::max(),
                             Limits::lowest(),
                             Limits::infinity(),
                             -Limits::infinity(),
                             Limits::quiet_NaN()};
    const TempFolder folder;
    const SyntheticSeries usual = Photograph(folder, RenderScene(40, 30), {}, Bracket(3, 4));
    const auto silence = LS::Util::SetFailureSink([](const std::string&) {});
    int nMerged = 0;
    for (const float fValue : fValues)
        for (const bool bAll : {false, true})
            for (auto SyntheticSeries::*pMember : {&SyntheticSeries::vfShutters, &SyntheticSeries::vfStops}) {
                SCOPED_TRACE(testing::Message() << fValue << (bAll ? " in all" : " in one"));
                SyntheticSeries series = usual;
                if (bAll)
                    (series.*pMember).assign(3, fValue);
                else
                    (series.*pMember)[1] = fValue;
                const Results results = ResultsOf(series);
                EXPECT_EQ(results, ResultsOf(series));
                if (results.preview) {
                    EXPECT_EQ(40U * 30, ReadRgbe(results.rgbe).vPixels.size());
                    EXPECT_EQ(40U * 30 * 3, results.mapped.size());
                    ++nMerged;
                }
                if (!bAll || IsLongForm()) // solving takes half a second
                    Merge(series, Curves::Recovered);
            }
    LS::Util::SetFailureSink(silence);
    EXPECT_LT(10, nMerged);
    ResetWorkspace();
}
