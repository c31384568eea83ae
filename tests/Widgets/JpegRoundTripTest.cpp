// A picture that went through the JPEG encoder.
#include "Widgets/JpegRoundTrip.h"

#include "tests/support/SamplePicture.h"
#include "tests/support/Screen.h"

#include <gtest/gtest.h>
#include <wx/log.h>

using LS::Tests::MeanDifference;

namespace {

wxImage AtQuality(wxImage picture, int nQuality)
{
    picture.SetOption(wxIMAGE_OPTION_QUALITY, nQuality);
    return JpegRoundTrip(picture);
}

} // namespace

TEST(JpegRoundTrip, LosesMoreAtLowerQuality)
{
    const wxImage picture = SamplePicture({180, 120});
    double dLast = 256;
    for (const int nQuality : {0, 5, 30, 60, 95}) {
        SCOPED_TRACE(nQuality);
        const wxImage decoded = AtQuality(picture, nQuality);
        ASSERT_TRUE(decoded.IsOk());
        ASSERT_EQ(picture.GetSize(), decoded.GetSize());
        const double dLoss = MeanDifference(picture, decoded);
        EXPECT_GT(dLoss, 0);
        EXPECT_LT(dLoss, dLast);
        dLast = dLoss;
    }
    EXPECT_LT(dLast, 4); // at 95
}

TEST(JpegRoundTrip, GivesAnInvalidImageWhereTheEncoderFails)
{
    const wxLogNull quiet;
    EXPECT_FALSE(AtQuality(wxImage(65501, 1), 90).IsOk()); // the format ends at 65500
    EXPECT_FALSE(JpegRoundTrip(wxImage()).IsOk());
}
