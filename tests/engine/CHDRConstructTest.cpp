// Statistics, range and choice of samples.
#include "engine/CHDRConstruct.h"
#include "engine/RecoveryTables.h"
#include "tests/support/Bits.h"
#include "tests/support/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <random>
#include <string>
#include <utility>

using LS::Tests::Bytes;
using testing::ElementsAre;

namespace {

/// The object under test with its state in reach.
class Probe : public CHDRConstruct {
public:
    Probe() : CHDRConstruct(0, 0) {}
    using CHDRConstruct::dBiweightEnergy;
    using CHDRConstruct::nHigh;
    using CHDRConstruct::nLow;
    using CHDRConstruct::nSamples;
    using CHDRConstruct::pfInformation;
    using CHDRConstruct::vpImages;

    /// Adds a grey image, or one of three planes. Each call gets a longer shutter time than the one before.
    void Add(std::int32_t nColumns, std::vector<Bytes> vPlanes)
    {
        if (vPlanes.size() == 1)
            vPlanes.resize(3, vPlanes.front());
        const std::size_t nPixels = vPlanes[0].size();
        const auto nRows = static_cast<std::int32_t>(nPixels) / nColumns;
        const auto fShutter = static_cast<float>(vpImages.size() + 1);
        AddImage(std::make_unique<LDRImage>(std::move(vPlanes), nColumns, nRows, fShutter, 8.0F, 3.0F, 0.0F));
        pfInformation.assign(nPixels, 0.0F);
    }

    /// Images of one pixel, where only their number matters.
    void AddCount(int nImages)
    {
        for (int i = 0; i < nImages; ++i)
            Add(1, {Bytes{128}});
    }

    std::vector<SampleRecord> Collect(std::int32_t nChannel)
    {
        std::vector<SampleRecord> vRecords(vpImages.size() * 256);
        nLow = 0;
        nHigh = 255;
        EXPECT_TRUE(CollectStatistics(vRecords, nChannel, nullptr));
        return vRecords;
    }
};

std::unique_ptr<LDRImage> Grey(std::int32_t nWidth, std::int32_t nHeight, float fShutter, float fStop = 8.0F,
                               float fGain = 3.0F, float fND = 0.0F)
{
    const Bytes plane(static_cast<std::size_t>(nWidth * nHeight), 128);
    return std::make_unique<LDRImage>(std::vector<LDRImage::Plane>(3, plane), nWidth, nHeight, fShutter,
                                      fStop, fGain, fND);
}

SampleRecord Record(std::initializer_list<float> values, float fWeight = 1.0F)
{
    SampleRecord record;
    record.pfValues = std::make_unique<float[]>(values.size());
    std::copy(values.begin(), values.end(), record.pfValues.get());
    record.fWeight = fWeight;
    return record;
}

TEST(LDRImage, LogExposure)
{
    // log(512 t / N^2) + gain / 3 - ND
    EXPECT_FLOAT_EQ(static_cast<float>(std::log(512.0 / 60 / 64) + 1), Grey(1, 1, 1 / 60.0F)->fLogExposure);
    EXPECT_FLOAT_EQ(static_cast<float>(std::log(512.0) + 2 - 0.5),
                    Grey(1, 1, 1.0F, 1.0F, 6.0F, 0.5F)->fLogExposure);
}

TEST(CHDRConstruct, ImagesAreSortedAndCounted)
{
    Probe construct;
    EXPECT_NEAR(103.619, construct.dBiweightEnergy, 0.0005);
    const std::array<int, 9> nSamples = {256, 256, 256, 256, 204, 168, 144, 128, 112};
    const std::array<float, 9> fShutters = {4, 1, 16, 2, 8, 0.25F, 32, 0.5F, 64};
    for (std::size_t i = 0; i < fShutters.size(); ++i) {
        construct.AddImage(Grey(2, 3, fShutters[i]));
        EXPECT_EQ(nSamples[i], construct.nSamples) << i + 1;
    }
    std::vector<float> vfSorted;
    for (const auto& pImage : construct.vpImages)
        vfSorted.push_back(pImage->fShutter);
    EXPECT_THAT(vfSorted, ElementsAre(0.25F, 0.5F, 1, 2, 4, 8, 16, 32, 64));
}

TEST(SlopeWeight, NeighboursOfAnImage)
{
    const struct {
        std::vector<float> vfValues;
        std::vector<double> vdWeights;
    } cases[] = {
        {{10, 61}, {51 / 255.0, 51 / 255.0}},
        {{0, 51, 204}, {51 / 255.0, 102 / 255.0, 153 / 255.0}},
        {{200, 100}, {0, 0}}, // falls
        {{0, 255, 0}, {1, 0, 0}},
    };
    for (const auto& c : cases) {
        Probe construct;
        construct.AddCount(static_cast<int>(c.vfValues.size()));
        for (std::size_t i = 0; i < c.vfValues.size(); ++i)
            EXPECT_FLOAT_EQ(static_cast<float>(c.vdWeights[i]),
                            construct.SlopeWeight(static_cast<std::int32_t>(i), c.vfValues.data()));
    }
}

TEST(AdjustValueRange, MovesInwardWhileTheCountsKeepUp)
{
    const struct {
        const char* name;
        std::int32_t nLow, nHigh;
        std::vector<std::pair<std::size_t, int>> counts; // value, count
        std::int32_t nNewLow, nNewHigh;
    } cases[] = {
        {"all equal, the bar stays below", 0, 200, std::vector<std::pair<std::size_t, int>>(0), 9, 191},
        {"just the bar of 0.6", 10, 110, {{10, 10}, {11, 6}, {110, 10}, {109, 6}}, 11, 109},
        {"just below it", 10, 110, {{10, 10}, {11, 5}, {110, 10}, {109, 5}}, 10, 110},
        {"the step at 5 % is out of reach", 10, 110, {{10, 10}, {15, 99}, {110, 10}, {105, 99}}, 10, 110},
        {"the step before it isn't", 10, 110, {{10, 10}, {14, 99}, {110, 10}, {106, 99}}, 14, 106},
        {"the bar refers to the best so far", 10, 110, {{10, 10}, {11, 20}, {12, 13}, {110, 1}}, 11, 110},
        {"upside down", 90, 80, {{80, 1}, {90, 1}}, 90, 80},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        std::vector<std::int32_t> vnHistogram(256, c.counts.empty() ? 7 : 0);
        for (const auto& [nValue, nCount] : c.counts)
            vnHistogram[nValue] = nCount;
        Probe construct;
        construct.nLow = c.nLow;
        construct.nHigh = c.nHigh;
        construct.AdjustValueRange(vnHistogram);
        EXPECT_EQ(c.nNewLow, construct.nLow);
        EXPECT_EQ(c.nNewHigh, construct.nHigh);
    }
}

/// What a value puts into the histogram.
std::array<float, 256> Spread(float fValue)
{
    Probe construct;
    construct.AddCount(1);
    std::array<float, 256> histogram{};
    const SampleRecord record = Record({fValue});
    construct.AddInformation({&record, 1}, histogram, 0);
    return histogram;
}

TEST(AddInformation, TriangleOfTheNoise)
{
    const struct {
        float fValue;
        std::vector<std::pair<std::size_t, double>> bins;
    } cases[] = {
        {0, {{0, 2}, {1, 0}}}, // width at least 0.5
        {2.25F, {{1, 0}, {2, 1}, {3, 0}}},
        {64, {{62, 0}, {63, 0.25}, {64, 0.5}, {65, 0.25}, {66, 0}}},
        {144, {{142, 1 / 9.0}, {143, 2 / 9.0}, {144, 1 / 3.0}, {146, 1 / 9.0}, {147, 0}}},
        {255, {{252, 0.06225}, {255, 0.2505}}},
    };
    for (const auto& c : cases)
        for (const auto& [nBin, dShare] : c.bins)
            EXPECT_NEAR(dShare, Spread(c.fValue)[nBin], 5e-5) << c.fValue << " at " << nBin;
}

/// The definition: every record that is left is looked at, every time.
std::size_t PlainSelectSample(const Probe& construct, std::span<float> pfHistogram,
                              std::span<SampleRecord> pRecords)
{
    double dBest = 0;
    std::size_t nBest = 0;
    for (std::size_t n = 0; n < pRecords.size(); ++n)
        if (pRecords[n].pfValues && !pRecords[n].bUsed) {
            const double dWorth = static_cast<double>(pRecords[n].fWeight) *
                                  construct.InformationAdded(pRecords, pfHistogram, n);
            if (dWorth > dBest) {
                dBest = dWorth;
                nBest = n;
            }
        }
    construct.AddInformation(pRecords, pfHistogram, nBest);
    pRecords[nBest].bUsed = true;
    return nBest;
}

TEST(SelectSample, EqualsThePlainSearch)
{
    constexpr int IMAGES = 3, RECORDS = IMAGES * 256, SAMPLES = 400;
    Probe construct;
    construct.AddCount(IMAGES);
    for (unsigned nSeed = 0; nSeed < 4; ++nSeed) {
        // Coarse values and weights make many records equal; every seventh record is empty.
        std::mt19937 random(nSeed);
        std::vector<SampleRecord> vFirst, vSecond;
        for (int n = 0; n < RECORDS; ++n) {
            const auto value = [&random, bCoarse = nSeed < 2] {
                return bCoarse ? static_cast<float>(random() % 30)
                               : static_cast<float>(random() % 25500) / 100;
            };
            const float v0 = value(), v1 = value(), v2 = value();
            const float fWeight = n == 0 ? 0 : static_cast<float>(random() % 5) / 4; // 0: the last resort
            for (auto* const pRecords : {&vFirst, &vSecond})
                pRecords->push_back(n == 0 || n % 7 ? Record({v0, v1, v2}, fWeight) : SampleRecord());
        }
        std::array<float, 256> firstHistogram{}, secondHistogram{};
        for (int q = 0; q < SAMPLES; ++q)
            ASSERT_EQ(PlainSelectSample(construct, firstHistogram, vFirst),
                      construct.SelectSample(secondHistogram, vSecond))
                << "seed " << nSeed << ", sample " << q;
        EXPECT_EQ(firstHistogram, secondHistogram);
    }
}

/// The statistics once more, written apart: one record at a time instead of one pixel at a time.
class PlainStatistics {
public:
    PlainStatistics(const Probe& construct, std::int32_t nWidth, std::size_t nChannel)
    {
        for (const auto& pImage : construct.vpImages)
            m_vBefore.push_back(pImage->ppPlanes[nChannel]);
        m_vPlanes = m_vBefore;
        for (std::size_t p = 0; p < m_vBefore[0].size(); ++p)
            m_vInformation.push_back(IsPureBlue(construct, p) ? -1 : Measure(p, nWidth));
    }

    /// Mean values of the pixels that have nValue in nImage; sum of information last. Empty without pixels.
    std::vector<float> Means(std::size_t nImage, int nValue) const
    {
        std::vector<float> vSums(m_vPlanes.size() + 1, 0.0F);
        bool bAny = false;
        for (std::size_t p = 0; p < m_vInformation.size(); ++p) {
            // While the first image is gathered, its pixels still have the values that they came with.
            const int z = nImage == 0 ? m_vBefore[0][p] : m_vPlanes[nImage][p];
            if (m_vInformation[p] < 0 || z != nValue)
                continue;
            bAny = true;
            vSums.back() += m_vInformation[p];
            for (std::size_t k = 0; k < m_vPlanes.size(); ++k) {
                const float fProduct = m_vPlanes[k][p] * m_vInformation[p];
                vSums[k] = vSums[k] + fProduct;
            }
        }
        if (!bAny)
            return {};
        for (std::size_t k = 0; k < m_vPlanes.size(); ++k)
            vSums[k] = std::min(vSums[k] / vSums.back(), 255.0F);
        return vSums;
    }

private:
    static bool IsPureBlue(const Probe& construct, std::size_t p)
    {
        return std::any_of(construct.vpImages.begin(), construct.vpImages.end(), [p](const auto& pImage) {
            const auto& planes = pImage->ppPlanes;
            return planes[0][p] == 0 && planes[1][p] == 0 && planes[2][p] == 255;
        });
    }

    float Measure(std::size_t p, std::int32_t nWidth)
    {
        std::size_t nBest = 0;
        for (std::size_t k = 0; k < m_vPlanes.size(); ++k) {
            const double dBest = k == 0 ? 0 : BiweightTable()[m_vPlanes[nBest][p]];
            if (BiweightTable()[m_vPlanes[k][p]] >= dBest) {
                nBest = k;
                if (m_vPlanes[k][p] == 0)
                    m_vPlanes[k][p] = 1;
            }
        }
        const Bytes& plane = m_vPlanes[nBest];
        int nTotal = 0;
        for (const int nOffset : {-nWidth - 1, -nWidth, 1 - nWidth, -1, 1, nWidth - 1, nWidth, nWidth + 1}) {
            const auto n = static_cast<long>(p) + nOffset;
            if (n >= 0 && n < static_cast<long>(plane.size()))
                nTotal += std::abs(plane[p] - plane[static_cast<std::size_t>(n)]);
        }
        const float fRatio = static_cast<float>(nTotal) / static_cast<float>(plane[p] * 8);
        return 1.0F / (fRatio + 1.0F);
    }

    std::vector<Bytes> m_vBefore, m_vPlanes;
    std::vector<float> m_vInformation; ///< -1 for pixels that take no part
};

/// A noisy series with black, white and pure blue pixels.
void AddNoisySeries(Probe& construct, int nImages, std::int32_t nWidth, std::size_t nPixels)
{
    std::mt19937 random(7);
    for (int i = 0; i < nImages; ++i) {
        std::vector<Bytes> vPlanes(3, Bytes(nPixels));
        for (std::size_t p = 0; p < nPixels; ++p)
            for (Bytes& plane : vPlanes) {
                const int z =
                    static_cast<int>(p * 400 / nPixels) + 60 * i - 130 + static_cast<int>(random() % 24);
                plane[p] = static_cast<unsigned char>(std::clamp(z, 0, 255));
            }
        for (std::size_t p = 5; p < nPixels; p += 97) {
            vPlanes[0][p] = vPlanes[1][p] = 0;
            vPlanes[2][p] = 255;
        }
        construct.Add(nWidth, std::move(vPlanes));
    }
}

TEST(CollectStatistics, EqualsThePlainTwin)
{
    constexpr int IMAGES = 4;
    constexpr std::int32_t WIDTH = 61; // of 43 rows
    Probe construct;
    AddNoisySeries(construct, IMAGES, WIDTH, 2623);
    const PlainStatistics plain(construct, WIDTH, 0);
    const auto vRecords = construct.Collect(0);

    float fLargest = 0;
    for (std::size_t n = 0; n < vRecords.size(); ++n)
        if (const auto vMeans = plain.Means(n / 256, static_cast<int>(n % 256)); !vMeans.empty())
            fLargest =
                std::max(fLargest, static_cast<float>(std::sqrt(vMeans.back()) * BiweightTable()[n % 256]));
    int nFilled = 0;
    for (std::size_t n = 0; n < vRecords.size(); ++n) {
        SCOPED_TRACE(n);
        const SampleRecord& record = vRecords[n];
        const auto vMeans = plain.Means(n / 256, static_cast<int>(n % 256));
        ASSERT_EQ(vMeans.empty(), !record.pfValues);
        if (vMeans.empty())
            continue;
        ++nFilled;
        EXPECT_EQ(static_cast<std::int32_t>(n / 256), record.nImage);
        EXPECT_EQ(static_cast<std::int32_t>(n % 256), record.nValue);
        for (std::size_t k = 0; k < IMAGES; ++k)
            ASSERT_TRUE(LS::Tests::SameBits(vMeans[k], record.pfValues[k]));
        const float fTrust = static_cast<float>(std::sqrt(vMeans.back()) * BiweightTable()[n % 256]);
        ASSERT_EQ(fTrust / fLargest, record.fWeight);
    }
    EXPECT_GT(nFilled, 600); // the series fills most of the 1024 records
}

} // namespace
