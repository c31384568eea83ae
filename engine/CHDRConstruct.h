// Recovery of a camera's response from a bracketed series.
//
// A variant of P. Debevec and J. Malik, "Recovering High Dynamic Range Radiance Maps from Photographs",
// SIGGRAPH 1997. The samples aren't pixels: for each image and 8-bit value there is one record of the mean
// values that the same pixels show in all images. Which records enter the equations is decided greedily by
// the information that each one adds. Each channel is solved twice: strongly smoothed for the radiances of
// the samples, then weakly smoothed for the curve.
#pragma once

#include "engine/LDRImage.h"
#include "engine/RecoveryReport.h"
#include "engine/ResponseCurve.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <vector>

class CurveSystem;
class ProgbarSetter;

/// What is known about the pixels that have one value in one image.
struct SampleRecord {
    /// Weighted mean value of these pixels in each image; null while the record is empty.
    std::unique_ptr<float[]> pfValues;
    float fWeight = 0; ///< sum of information, then the record's worth as a sample
    std::int32_t nImage = 0;
    std::int32_t nValue = 0;
    bool bUsed = false; ///< already taken as a sample
    /// What the record was worth when SelectSample last looked at it; it is never worth more later.
    double dWorth = std::numeric_limits<double>::infinity();
};

/// The curve of one channel: natural logarithms of relative radiance, by 8-bit value.
struct CurveHolder {
    std::unique_ptr<float[]> pfCurve;
    std::int32_t nCount = static_cast<std::int32_t>(CURVE_ENTRIES);
};

/// Takes the exposures of a series, solves the three channels once, and holds the curves.
///
/// Silent failures are logged where they happen. A cancel is no failure: it gives false without a line.
class CHDRConstruct {
public:
    using CurveHolders = std::array<std::unique_ptr<CurveHolder>, CURVE_CHANNELS>;

    /// @param nWidth,nHeight  the size of all images; 0 and 0 takes that of the first
    CHDRConstruct(std::int32_t nWidth, std::int32_t nHeight);
    CHDRConstruct(const CHDRConstruct&) = delete;
    CHDRConstruct& operator=(const CHDRConstruct&) = delete;
    virtual ~CHDRConstruct();

    /// Adds an exposure at its place by ascending log exposure, so the order of the calls plays no part.
    /// Throws std::exception for a null pointer, for another size and for an exposure that is not finite.
    void AddImage(std::unique_ptr<LDRImage> pImage);

    /// Solves the three channels.
    /// @return false after a cancel and where the series doesn't allow it: fewer than two images or more than
    ///         256, too little range, too few distinct values, no solution
    bool Construct(ProgbarSetter* pProgress);

    /// Red, green, blue; null before a successful Construct.
    const CurveHolders& GetCurves() const { return ppCurves; }

    /// Ranges, samples and times of the latest Construct, also after a failure as far as it went.
    const RecoveryReport& GetReport() const { return m_report; }

    /// @return null where RecoverChannel gives false
    std::unique_ptr<CurveHolder> SolveChannel(std::int32_t nChannel, ProgbarSetter* pProgress);

    /// @param pfCurve  receives 256 logarithms
    bool RecoverChannel(std::int32_t nChannel, float* pfCurve, ProgbarSetter* pProgress);

    /// Fills the records and finds the usable range of values. Pixels that are pure blue in any image take no
    /// part. Every product, quotient and sum is rounded to 32 bits, pixels in row-major order.
    /// @param pRecords  empty records, 256 for each image
    /// @return false after a cancel, or if the range comes out below 50 values
    bool CollectStatistics(std::span<SampleRecord> pRecords, std::int32_t nChannel, ProgbarSetter* pProgress);

    /// How flat the surroundings of a pixel are, in the image that shows it best: near 1 in an even area,
    /// near 0 at an edge. Measured once for each pixel, by the first channel that asks.
    float PixelInformation(std::size_t nPixel, std::int32_t nChannel)
    {
        const float fKnown = pfInformation[nPixel];
        return fKnown > 0 ? fKnown : MeasureInformation(nPixel, nChannel);
    }

    /// Takes the record that is worth most beside those taken before, the earliest among equals. Without a
    /// candidate it is record 0 once more.
    /// @param pfHistogram  between calls with the same records its bins may only grow
    /// @return the record's index
    std::size_t SelectSample(std::span<float> pfHistogram, std::span<SampleRecord> pRecords) const;

    /// What a record would add to the information so far: near the number of images where all of its values
    /// are new, near 0 where the histogram is full.
    /// Throws std::exception for an empty record.
    float InformationAdded(std::span<const SampleRecord> pRecords, std::span<const float> pfHistogram,
                           std::size_t nRecord) const;

    /// Adds a record to the histogram of information by 8-bit value. Throws like InformationAdded.
    void AddInformation(std::span<const SampleRecord> pRecords, std::span<float> pfHistogram,
                        std::size_t nRecord) const;

    /// Moves each limit of the range inward, over at most 5 % of it, where values are nearly as common.
    /// @param pnHistogram  256 counts
    void AdjustValueRange(std::span<const std::int32_t> pnHistogram);

    /// How much a sample's value rises around an image, 0 to 1: what doesn't rise with exposure says nothing.
    /// @param pfValues  one value per image; of fewer than two images the result is 0
    float SlopeWeight(std::int32_t nImage, const float* pfValues) const;

protected:
    std::vector<std::unique_ptr<LDRImage>> vpImages; ///< by ascending fLogExposure
    CurveHolders ppCurves;
    std::int32_t nHeight;
    std::int32_t nWidth;
    std::vector<float> pfInformation; ///< of each pixel; 0 is not measured yet
    std::int32_t nLow = 0;            ///< usable range of values in the current channel
    std::int32_t nHigh = 0;
    std::int32_t nSamples = 0; ///< how many samples a solve takes
    double dBiweightEnergy;    ///< sum of squares of the trust table
    float fSmooth1 = 20.0F;    ///< smoothing strength of the first solve
    float fSmooth2 = 1.0F;     ///< and of the second

private:
    std::size_t ImageCount() const { return vpImages.size(); }
    std::size_t PixelCount() const;
    std::vector<const unsigned char*> Planes(std::int32_t nChannel) const;
    float MeasureInformation(std::size_t nPixel, std::int32_t nChannel);

    class RecordSums;

    std::vector<unsigned char> PixelsThatTakePart() const;
    void GatherPixels(RecordSums& sums, std::size_t nFirst, std::size_t nEnd, std::int32_t nChannel,
                      const unsigned char* pDarkest);
    float FinishImage(std::span<SampleRecord> pRecords) const;
    bool FindValueRange(std::span<SampleRecord> pRecords, float fLargestWeight);

    double MeasureWorth(std::span<SampleRecord> pRecords, std::span<const float> pfHistogram,
                        std::size_t nRecord) const;
    bool HasEnoughValues(std::span<const SampleRecord> pRecords, std::int32_t nChannel) const;
    bool SelectSamples(std::span<SampleRecord> pRecords, std::int32_t nChannel,
                       std::vector<std::size_t>& vnSamples) const;
    void AddSample(CurveSystem& system, const SampleRecord& record, std::int32_t nSample,
                   const double* pdRadiance) const;
    bool SolveRadiances(std::span<const SampleRecord> pRecords, std::span<const std::size_t> vnSamples,
                        std::vector<double>& vdRadiances, ProgbarSetter* pProgress) const;
    bool SolveCurve(std::span<const SampleRecord> pRecords, std::span<const std::size_t> vnSamples,
                    std::span<const double> vdRadiances, float* pfCurve, ProgbarSetter* pProgress) const;

    RecoveryReport m_report;
    std::vector<unsigned char> m_vMask; ///< 1 for each pixel that takes part; the same for all channels
};
