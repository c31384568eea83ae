// The records of a series, the range of values that it uses, and the choice of samples.
#include "engine/CHDRConstruct.h"

#include "Util/FailureLog.h"
#include "engine/HDRWorkspace.h"
#include "engine/NoiseModel.h"
#include "engine/ProgbarSetter.h"
#include "engine/RecoveryTables.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

constexpr const char* STEP = "recover curves";
constexpr std::int32_t LEAST_RANGE = 50; // values between which a curve can be told
constexpr float LARGEST_VALUE = 255.0F;  // rounding can put a mean above it
constexpr double LEAST_SHARE = 0.00001;  // what a sample adds to a bin with less is nothing
constexpr double RANGE_MARGIN = 0.05;    // the part of the range that a limit may give up

using ValueCounts = std::array<std::int32_t, CURVE_ENTRIES>;

/// The value with the largest count; nStart unless another is strictly larger, then the first of these.
std::int32_t Commonest(const ValueCounts& counts, std::int32_t nStart)
{
    auto nBest = static_cast<std::size_t>(nStart);
    for (std::size_t z = 0; z < counts.size(); ++z)
        if (counts[z] > counts[nBest])
            nBest = z;
    return static_cast<std::int32_t>(nBest);
}

/// Walks from a limit of the range inward as long as the counts keep up with a bar that rises from half of
/// the best one to all of it.
/// @param nStep  1 from the low limit, -1 from the high one
std::int32_t MovedInward(std::span<const std::int32_t> pnHistogram, std::int32_t nLimit, std::int32_t nStep,
                         double dMargin)
{
    std::int32_t nBest = nLimit;
    for (std::int32_t nAway = 1; nAway < dMargin; ++nAway) {
        const std::int32_t i = nLimit + nStep * nAway;
        const double dBar = nAway / dMargin * 0.5 + 0.5;
        if (pnHistogram[static_cast<std::size_t>(i)] >= dBar * pnHistogram[static_cast<std::size_t>(nBest)])
            nBest = i;
    }
    return nBest;
}

std::string Channel(std::int32_t nChannel)
{
    return CHANNEL_NAMES[static_cast<std::size_t>(nChannel)];
}

bool IsCandidate(const SampleRecord& record)
{
    return record.pfValues && !record.bUsed;
}

/// The sum of differences between a value and the 3 x 3 pixels around one. They lie on the flat plane: at the
/// ends of a row the neighbours are those of the next one.
int DifferencesAround(const LDRImage::Plane& plane, std::size_t nPixel, std::size_t nWidth, int nValue)
{
    int nSum = 0;
    const auto addThree = [&](std::size_t nMiddle) {
        for (std::size_t n = nMiddle - 1; n != nMiddle + 2; ++n)
            nSum += std::abs(nValue - plane[n]);
    };
    if (nPixel > nWidth && nPixel + nWidth + 1 < plane.size()) {
        addThree(nPixel - nWidth);
        addThree(nPixel);
        addThree(nPixel + nWidth);
        return nSum;
    }
    const auto nPixels = static_cast<std::ptrdiff_t>(plane.size());
    const auto nStep = static_cast<std::ptrdiff_t>(nWidth);
    for (std::ptrdiff_t nRow = -nStep; nRow <= nStep; nRow += nStep)
        for (std::ptrdiff_t nColumn = -1; nColumn <= 1; ++nColumn) {
            const std::ptrdiff_t n = static_cast<std::ptrdiff_t>(nPixel) + nRow + nColumn;
            if (n >= 0 && n < nPixels)
                nSum += std::abs(nValue - plane[static_cast<std::size_t>(n)]);
        }
    return nSum;
}

const SampleRecord& FilledRecord(std::span<const SampleRecord> pRecords, std::size_t nRecord)
{
    if (nRecord >= pRecords.size() || !pRecords[nRecord].pfValues)
        throw std::out_of_range("no such record");
    return pRecords[nRecord];
}

} // namespace

/// The sums of all records while pixels come in, in a form in which four images are added at once: the
/// products of values and information, then the information itself, then zeros. Each sum takes its pixels one
/// by one, so it is rounded as if it were added by itself.
class CHDRConstruct::RecordSums {
public:
    /// What one pixel adds to a record, or a record's sums.
    using Four [[gnu::vector_size(16)]] = float;

    explicit RecordSums(std::size_t nImages)
        : m_nImages(nImages), m_nFours(nImages / 4 + 1), m_vSums(nImages * CURVE_ENTRIES * m_nFours)
    {
    }

    /// Fours of a pixel and of a record.
    std::size_t Fours() const { return m_nFours; }

    /// Adds pixels to their records.
    /// @param pixels   where they lie in the planes
    /// @param vpPlanes for each image the values that its records go by
    /// @param pAdded   Fours() for each pixel
    void Add(std::span<const std::size_t> pixels, std::span<const unsigned char* const> vpPlanes,
             const Four* pAdded)
    {
        for (std::size_t nFirst = 0; nFirst < m_nFours; nFirst += 3)
            switch (m_nFours - nFirst) {
            case 1:
                AddSlice(nFirst, pixels, vpPlanes, pAdded, std::make_index_sequence<1>());
                break;
            case 2:
                AddSlice(nFirst, pixels, vpPlanes, pAdded, std::make_index_sequence<2>());
                break;
            default:
                AddSlice(nFirst, pixels, vpPlanes, pAdded, std::make_index_sequence<3>());
            }
    }

    /// Fills the records that have pixels; information is always above 0.
    void Store(std::span<SampleRecord> pRecords) const
    {
        for (std::size_t nRecord = 0; nRecord < m_nImages * CURVE_ENTRIES; ++nRecord) {
            const Four* const pSums = m_vSums.data() + nRecord * m_nFours;
            const auto sum = [pSums](std::size_t k) { return pSums[k / 4][k % 4]; };
            if (!(sum(m_nImages) > 0))
                continue;
            SampleRecord& record = pRecords[nRecord];
            record.fWeight = sum(m_nImages);
            record.nImage = static_cast<std::int32_t>(nRecord / CURVE_ENTRIES);
            record.nValue = static_cast<std::int32_t>(nRecord % CURVE_ENTRIES);
            record.pfValues = std::make_unique<float[]>(m_nImages);
            for (std::size_t k = 0; k < m_nImages; ++k)
                record.pfValues[k] = sum(k);
        }
    }

private:
    /// Adds some neighbouring fours. Their number is a constant: as a loop this takes twice the time.
    template <std::size_t... FOUR>
    void AddSlice(std::size_t nFirst, std::span<const std::size_t> pixels,
                  std::span<const unsigned char* const> vpPlanes, const Four* pAdded,
                  std::index_sequence<FOUR...>)
    {
        pAdded += nFirst;
        for (const std::size_t nPixel : pixels) {
            // Images inside: in a flat area the sums of one image wait for each other.
            Four* pRecords = m_vSums.data() + nFirst;
            for (const unsigned char* const pPlane : vpPlanes) {
                Four* const pSums = pRecords + pPlane[nPixel] * m_nFours;
                ((pSums[FOUR] += pAdded[FOUR]), ...);
                pRecords += CURVE_ENTRIES * m_nFours;
            }
            pAdded += m_nFours;
        }
    }

    std::size_t m_nImages;
    std::size_t m_nFours;
    std::vector<Four> m_vSums;
};

std::vector<const unsigned char*> CHDRConstruct::Planes(std::int32_t nChannel) const
{
    std::vector<const unsigned char*> vpPlanes;
    for (const auto& pImage : vpImages)
        vpPlanes.push_back(pImage->ppPlanes[static_cast<std::size_t>(nChannel)].data());
    return vpPlanes;
}

std::vector<unsigned char> CHDRConstruct::PixelsThatTakePart() const
{
    std::vector<unsigned char> vMask(PixelCount(), 1);
    for (const auto& pImage : vpImages) {
        const unsigned char* const pRed = pImage->ppPlanes[0].data();
        const unsigned char* const pGreen = pImage->ppPlanes[1].data();
        const unsigned char* const pBlue = pImage->ppPlanes[2].data();
        for (std::size_t p = 0; p < vMask.size(); ++p)
            vMask[p] &= static_cast<unsigned char>((pRed[p] | pGreen[p] | (pBlue[p] ^ 255)) != 0);
    }
    return vMask;
}

float CHDRConstruct::MeasureInformation(std::size_t nPixel, std::int32_t nChannel)
{
    const auto c = static_cast<std::size_t>(nChannel);
    double dBestTrust = 0;
    LDRImage::Plane* pPlane = &vpImages.front()->ppPlanes[c];
    int nChosen = 1;
    for (const auto& pImage : vpImages) {
        unsigned char& z = pImage->ppPlanes[c][nPixel];
        if (dBestTrust <= BiweightTable()[z]) {
            z = std::max<unsigned char>(z, 1); // it becomes a divisor, and stays so for all who read it later
            pPlane = &pImage->ppPlanes[c];
            nChosen = z;
            dBestTrust = BiweightTable()[z];
        }
    }

    const int nDifferences = DifferencesAround(*pPlane, nPixel, static_cast<std::size_t>(nWidth), nChosen);
    const float fDistance = static_cast<float>(nDifferences) / static_cast<float>(nChosen * 8);
    return pfInformation[nPixel] = 1.0F / (fDistance + 1.0F);
}

bool CHDRConstruct::CollectStatistics(std::span<SampleRecord> pRecords, std::int32_t nChannel,
                                      ProgbarSetter* pProgress)
{
    const HDRWorkspace& workspace = Workspace();
    pfInformation.resize(PixelCount());
    if (m_vMask.empty())
        m_vMask = PixelsThatTakePart();
    Report(pProgress, 5);
    if (workspace.bCancel)
        return false;

    // Measuring information raises some values from 0 to 1. The darkest image's records go by the values
    // before that, those of all others by the values after it.
    const LDRImage::Plane darkest = vpImages.front()->ppPlanes[static_cast<std::size_t>(nChannel)];

    RecordSums sums(ImageCount());
    for (std::size_t i = 0; i < ImageCount(); ++i) {
        // The pixels come in as many parts as there are images, for the reports.
        const std::size_t nFirst = PixelCount() * i / ImageCount();
        const std::size_t nEnd = PixelCount() * (i + 1) / ImageCount();
        GatherPixels(sums, nFirst, nEnd, nChannel, darkest.data());
        if (workspace.bCancel)
            return false;
        const double dDone = static_cast<double>(i + 1) / static_cast<double>(ImageCount());
        Report(pProgress, static_cast<std::int32_t>(dDone * 90 + 5));
    }
    sums.Store(pRecords);
    float fLargestWeight = 0;
    for (std::size_t i = 0; i < ImageCount(); ++i)
        fLargestWeight =
            std::max(fLargestWeight, FinishImage(pRecords.subspan(i * CURVE_ENTRIES, CURVE_ENTRIES)));

    if (!FindValueRange(pRecords, fLargestWeight) || workspace.bCancel)
        return false;
    Report(pProgress, 100);
    if (nHigh - nLow < LEAST_RANGE) {
        LS::Util::LogFailure(STEP, "",
                             "the series has too little range: " + Channel(nChannel) + " from " +
                                 std::to_string(nLow) + " to " + std::to_string(nHigh) +
                                 "; a curve needs a range of " + std::to_string(LEAST_RANGE));
        return false;
    }
    return true;
}

/// Adds pixels to the records of all images: sums of information, and of values times information. Such a
/// product is the same whichever record it goes to, so one pass serves the records of all images.
///
/// 9 images of 461 x 307 pixels: all that recovery does beside its solver takes 38 ms instead of 57 ms with a
/// pass for each image.
void CHDRConstruct::GatherPixels(RecordSums& sums, std::size_t nFirst, std::size_t nEnd,
                                 std::int32_t nChannel, const unsigned char* pDarkest)
{
    constexpr std::size_t BLOCK = 64; // pixels whose products fit into the fastest cache
    const std::size_t nFloats = 4 * sums.Fours();
    const std::vector<const unsigned char*> vpPlanes = Planes(nChannel);
    std::vector<const unsigned char*> vpRecordPlanes = vpPlanes;
    vpRecordPlanes.front() = pDarkest;
    std::vector<RecordSums::Four> vPixels(BLOCK * sums.Fours());
    std::array<std::size_t, BLOCK> pixels{};
    while (nFirst < nEnd) {
        std::size_t nCount = 0;
        for (; nFirst < nEnd && nCount < BLOCK; ++nFirst)
            if (m_vMask[nFirst])
                pixels[nCount++] = nFirst;

        auto* const pfProducts = reinterpret_cast<float*>(vPixels.data());
        for (std::size_t n = 0; n < nCount; ++n) // may change values from 0 to 1
            pfProducts[n * nFloats + ImageCount()] = PixelInformation(pixels[n], nChannel);
        for (std::size_t k = 0; k < ImageCount(); ++k)
            for (std::size_t n = 0; n < nCount; ++n)
                pfProducts[n * nFloats + k] =
                    static_cast<float>(vpPlanes[k][pixels[n]]) * pfInformation[pixels[n]];
        sums.Add(std::span(pixels).first(nCount), vpRecordPlanes, vPixels.data());
    }
}

/// Turns the sums of one image's records into means and trust. @return the largest trust
float CHDRConstruct::FinishImage(std::span<SampleRecord> pRecords) const
{
    float fLargest = 0;
    for (std::size_t z = 0; z < CURVE_ENTRIES; ++z) {
        SampleRecord& record = pRecords[z];
        if (!record.pfValues)
            continue;
        for (std::size_t k = 0; k < ImageCount(); ++k)
            record.pfValues[k] = std::min(record.pfValues[k] / record.fWeight, LARGEST_VALUE);
        record.fWeight = static_cast<float>(std::sqrt(record.fWeight) * BiweightTable()[z]);
        fLargest = std::max(fLargest, record.fWeight);
    }
    return fLargest;
}

/// Sets the range from the commonest values of the darkest and of the brightest image.
/// @return false after a cancel
bool CHDRConstruct::FindValueRange(std::span<SampleRecord> pRecords, float fLargestWeight)
{
    const HDRWorkspace& workspace = Workspace();
    ValueCounts darkest{}, brightest{}, all{};
    for (SampleRecord& record : pRecords) {
        if (!record.pfValues)
            continue;
        if (fLargestWeight > 0) // else all weights are 0, and no record qualifies as a sample
            record.fWeight /= fLargestWeight;
        const auto value = [&record](std::size_t k) { return static_cast<std::size_t>(record.pfValues[k]); };
        ++darkest[value(0)];
        ++brightest[value(ImageCount() - 1)];
        for (std::size_t k = 0; k < ImageCount(); ++k)
            ++all[value(k)];
        if (workspace.bCancel)
            return false;
    }
    nLow = Commonest(darkest, nLow);
    nHigh = Commonest(brightest, nHigh);
    AdjustValueRange(all);
    return true;
}

void CHDRConstruct::AdjustValueRange(std::span<const std::int32_t> pnHistogram)
{
    const auto fMargin = static_cast<float>(RANGE_MARGIN * (nHigh - nLow));
    nLow = MovedInward(pnHistogram, nLow, 1, fMargin);
    nHigh = MovedInward(pnHistogram, nHigh, -1, fMargin);
}

/// Whether SelectSample finds a record for each sample, or has record 0 to fall back on.
bool CHDRConstruct::HasEnoughValues(std::span<const SampleRecord> pRecords, std::int32_t nChannel) const
{
    const auto nUseful = std::count_if(pRecords.begin(), pRecords.end(), [](const SampleRecord& record) {
        return IsCandidate(record) && record.fWeight > 0;
    });
    if (nUseful >= nSamples || pRecords.front().pfValues)
        return true;
    LS::Util::LogFailure(STEP, "",
                         "the series has too few distinct values: its images show " +
                             std::to_string(nUseful) + " in " + Channel(nChannel) + "; a curve of " +
                             std::to_string(ImageCount()) + " images needs " + std::to_string(nSamples));
    return false;
}

/// @return false after a cancel, or without enough values
bool CHDRConstruct::SelectSamples(std::span<SampleRecord> pRecords, std::int32_t nChannel,
                                  std::vector<std::size_t>& vnSamples) const
{
    if (!HasEnoughValues(pRecords, nChannel))
        return false;
    std::array<float, CURVE_ENTRIES> histogram{};
    for (std::int32_t q = 0; q < nSamples; ++q) {
        vnSamples.push_back(SelectSample(histogram, pRecords));
        if (Workspace().bCancel)
            return false;
    }
    return true;
}

double CHDRConstruct::MeasureWorth(std::span<SampleRecord> pRecords, std::span<const float> pfHistogram,
                                   std::size_t nRecord) const
{
    SampleRecord& record = pRecords[nRecord];
    return record.dWorth =
               record.fWeight * static_cast<double>(InformationAdded(pRecords, pfHistogram, nRecord));
}

// A fuller histogram never makes a record worth more, also not by rounding: each of the sums, quotients and
// products behind its worth is rounded to the nearest number, which keeps their order. So the worth of an
// earlier call is an upper bound, and most records need no second look.
std::size_t CHDRConstruct::SelectSample(std::span<float> pfHistogram, std::span<SampleRecord> pRecords) const
{
    double dHighest = 0;
    std::optional<std::size_t> nPromising;
    for (std::size_t n = 0; n < pRecords.size(); ++n)
        if (IsCandidate(pRecords[n]) && pRecords[n].dWorth > dHighest) {
            dHighest = pRecords[n].dWorth;
            nPromising = n;
        }
    const double dReached = nPromising ? MeasureWorth(pRecords, pfHistogram, *nPromising) : 0;

    double dBest = 0;
    std::size_t nBest = 0;
    for (std::size_t n = 0; n < pRecords.size(); ++n) {
        const SampleRecord& record = pRecords[n];
        if (!IsCandidate(record) || record.dWorth < dReached || record.dWorth <= dBest)
            continue;
        const double dWorth = MeasureWorth(pRecords, pfHistogram, n);
        if (dWorth > dBest) {
            dBest = dWorth;
            nBest = n;
        }
    }
    AddInformation(pRecords, pfHistogram, nBest);
    pRecords[nBest].bUsed = true;
    return nBest;
}

float CHDRConstruct::InformationAdded(std::span<const SampleRecord> pRecords,
                                      std::span<const float> pfHistogram, std::size_t nRecord) const
{
    try {
        const SampleRecord& record = FilledRecord(pRecords, nRecord);
        double dSum = 0;
        for (std::size_t k = 0; k < ImageCount(); ++k) {
            const NoiseModel noise(record.pfValues[k]);
            for (std::int32_t v = noise.First(); v <= noise.Last(); ++v) {
                const double dShare = noise.At(v);
                if (dShare >= LEAST_SHARE)
                    dSum += dShare / (pfHistogram[static_cast<std::size_t>(v)] + dShare);
            }
        }
        return static_cast<float>(dSum);
    } catch (const std::exception&) {
        throw std::runtime_error("InformationAdded Exception!");
    }
}

void CHDRConstruct::AddInformation(std::span<const SampleRecord> pRecords, std::span<float> pfHistogram,
                                   std::size_t nRecord) const
{
    try {
        const SampleRecord& record = FilledRecord(pRecords, nRecord);
        for (std::size_t k = 0; k < ImageCount(); ++k) {
            const NoiseModel noise(record.pfValues[k]);
            for (std::int32_t v = noise.First(); v <= noise.Last(); ++v) {
                float& fBin = pfHistogram[static_cast<std::size_t>(v)];
                fBin = static_cast<float>(fBin + noise.At(v));
            }
        }
    } catch (const std::exception&) {
        throw std::runtime_error("AddInformation Exception!");
    }
}

float CHDRConstruct::SlopeWeight(std::int32_t nImage, const float* pfValues) const
{
    const std::size_t nLast = ImageCount() - 1;
    const auto i = static_cast<std::size_t>(nImage);
    if (ImageCount() < 2 || i > nLast)
        return 0;
    const auto value = [pfValues](std::size_t n) { return static_cast<double>(pfValues[n]); };
    const double dPrevious = i > 0 ? value(i - 1) : 2 * value(0) - value(1);
    const double dNext = i < nLast ? value(i + 1) : 2 * value(i) - value(i - 1);
    const double dSlope = (dNext - dPrevious) * 0.5 / 255.0;
    return static_cast<float>(dSlope > 0 ? std::min(dSlope, 1.0) : 0.0); // 0 also where it is not a number
}
