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

namespace {

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

bool IsCandidate(const SampleRecord& record)
{
    return record.pfValues && !record.bUsed;
}

const SampleRecord& FilledRecord(std::span<const SampleRecord> pRecords, std::size_t nRecord)
{
    if (nRecord >= pRecords.size() || !pRecords[nRecord].pfValues)
        throw std::out_of_range("no such record");
    return pRecords[nRecord];
}

} // namespace

std::vector<const unsigned char*> CHDRConstruct::Planes(std::int32_t nChannel) const
{
    std::vector<const unsigned char*> vpPlanes;
    for (const auto& pImage : vpImages)
        vpPlanes.push_back(pImage->ppPlanes[static_cast<std::size_t>(nChannel)].data());
    return vpPlanes;
}

std::vector<bool> CHDRConstruct::PixelsThatTakePart() const
{
    std::vector<bool> vbMask(PixelCount(), true);
    for (const auto& pImage : vpImages) {
        const auto& planes = pImage->ppPlanes;
        for (std::size_t p = 0; p < vbMask.size(); ++p)
            if (planes[0][p] == 0 && planes[1][p] == 0 && planes[2][p] == 255)
                vbMask[p] = false;
    }
    return vbMask;
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

    // On the flat plane: at the ends of a row the neighbours are those of the next one.
    const auto nPixels = static_cast<std::ptrdiff_t>(pPlane->size());
    int nDifferences = 0;
    for (std::ptrdiff_t nRow = -nWidth; nRow <= nWidth; nRow += nWidth)
        for (std::ptrdiff_t nColumn = -1; nColumn <= 1; ++nColumn) {
            const std::ptrdiff_t n = static_cast<std::ptrdiff_t>(nPixel) + nRow + nColumn;
            if (n >= 0 && n < nPixels)
                nDifferences += std::abs(nChosen - (*pPlane)[static_cast<std::size_t>(n)]);
        }

    const float fDistance = static_cast<float>(nDifferences) / static_cast<float>(nChosen * 8);
    return pfInformation[nPixel] = 1.0F / (fDistance + 1.0F);
}

bool CHDRConstruct::CollectStatistics(std::span<SampleRecord> pRecords, std::int32_t nChannel,
                                      ProgbarSetter* pProgress)
{
    const HDRWorkspace& workspace = Workspace();
    pfInformation.resize(PixelCount());
    const std::vector<bool> vbMask = PixelsThatTakePart();
    Report(pProgress, 5);
    if (workspace.bCancel)
        return false;

    float fLargestWeight = 0;
    for (std::size_t i = 0; i < ImageCount(); ++i) {
        if (!GatherImage(pRecords, i, nChannel, vbMask))
            return false;
        fLargestWeight =
            std::max(fLargestWeight, FinishImage(pRecords.subspan(i * CURVE_ENTRIES, CURVE_ENTRIES)));
        if (workspace.bCancel)
            return false;
        const double dDone = static_cast<double>(i + 1) / static_cast<double>(ImageCount());
        Report(pProgress, static_cast<std::int32_t>(dDone * 90 + 5));
    }

    if (!FindValueRange(pRecords, fLargestWeight) || workspace.bCancel)
        return false;
    Report(pProgress, 100);
    if (nHigh - nLow < LEAST_RANGE) {
        LS::Util::LogFailure("recover curves", "", "the series has too little range");
        return false;
    }
    return true;
}

/// Adds the pixels of one image to its records: sums of information, and of values times information.
bool CHDRConstruct::GatherImage(std::span<SampleRecord> pRecords, std::size_t nImage, std::int32_t nChannel,
                                const std::vector<bool>& vbMask)
{
    const HDRWorkspace& workspace = Workspace();
    const std::vector<const unsigned char*> vpPlanes = Planes(nChannel);
    for (std::size_t p = 0; p < vbMask.size(); ++p) {
        if (!vbMask[p])
            continue;
        const unsigned char z = vpPlanes[nImage][p];
        SampleRecord& record = pRecords[nImage * CURVE_ENTRIES + z];
        if (!record.pfValues) {
            record.pfValues = std::make_unique<float[]>(ImageCount());
            record.nImage = static_cast<std::int32_t>(nImage);
            record.nValue = z;
        }
        const float fInformation = PixelInformation(p, nChannel); // may change values at p from 0 to 1
        record.fWeight += fInformation;
        for (std::size_t k = 0; k < vpPlanes.size(); ++k)
            record.pfValues[k] += static_cast<float>(vpPlanes[k][p]) * fInformation;
        if (workspace.bCancel)
            return false;
    }
    return true;
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

/// @return false after a cancel
bool CHDRConstruct::SelectSamples(std::span<SampleRecord> pRecords, std::vector<std::size_t>& vnSamples) const
{
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
