// Statistics, range and choice of samples.
#include "engine/CHDRConstruct.h"
#include "engine/RecoveryTables.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <random>
#include <string>
#include <utility>

using LS::Tests::Bytes;

namespace {

/// The object under test with its state in reach.
class Probe : public CHDRConstruct {
public:
    Probe() : CHDRConstruct(0, 0) {}
    using CHDRConstruct::nHigh;
    using CHDRConstruct::nLow;
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
    const std::vector<LDRImage::Plane> planes(3, Bytes{128});
    EXPECT_FLOAT_EQ(static_cast<float>(std::log(512.0 / 60 / 64) + 2 - 0.5),
                    LDRImage(planes, 1, 1, 1 / 60.0F, 8, 6, 0.5F).fLogExposure);
}

TEST(SlopeWeight, NeighboursOfAnImage)
{
    const std::pair<std::vector<float>, std::vector<double>> cases[] = {
        {{0, 51, 204}, {51 / 255.0, 102 / 255.0, 153 / 255.0}}, {{0, 255, 0}, {1, 0, 0}}};
    Probe construct;
    construct.AddCount(3);
    for (const auto& [vfValues, vdWeights] : cases)
        for (std::int32_t i = 0; i < 3; ++i)
            EXPECT_FLOAT_EQ(static_cast<float>(vdWeights[static_cast<std::size_t>(i)]),
                            construct.SlopeWeight(i, vfValues.data()));
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
        {"the bar of 0.6, and just below", 10, 110, {{10, 10}, {11, 6}, {110, 10}, {109, 5}}, 11, 110},
        {"the step at 5 % is out of reach", 10, 110, {{10, 10}, {15, 99}, {110, 10}, {105, 99}}, 10, 110},
        {"the bar refers to the best so far", 10, 110, {{10, 10}, {11, 20}, {12, 13}, {110, 1}}, 11, 110},
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

TEST(AddInformation, TriangleOfTheNoise)
{
    const struct {
        float fValue;
        std::vector<std::pair<std::size_t, double>> bins;
    } cases[] = {
        {0, {{0, 2}, {1, 0}}}, // width at least 0.5
        {64, {{62, 0}, {63, 0.25}, {64, 0.5}, {65, 0.25}, {66, 0}}},
        {255, {{252, 0.06225}, {255, 0.2505}}},
    };
    Probe construct;
    construct.AddCount(1);
    for (const auto& c : cases) {
        std::array<float, 256> histogram{};
        const SampleRecord record = Record({c.fValue});
        construct.AddInformation({&record, 1}, histogram, 0);
        for (const auto& [nBin, dShare] : c.bins)
            EXPECT_NEAR(dShare, histogram[nBin], 5e-5) << c.fValue << " at " << nBin;
    }
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
    for (const unsigned nSeed : {0U, 2U}) {
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

TEST(PixelInformation, IsThatOfTheBestImage)
{
    // In 3 x 3 pixels the second image has the value nearest to the middle, and one that differs by 50.
    Probe construct;
    construct.Add(3, {Bytes(9, 20)});
    construct.Add(3, {{100, 100, 150, 100, 100, 100, 100, 100, 0}});
    EXPECT_EQ(1 / (1 + 150 / 800.0F), construct.PixelInformation(4, 0));
    EXPECT_EQ(1 / (1 + 50 / 800.0F), construct.PixelInformation(0, 0)) << "rows lie behind each other";
    EXPECT_EQ(1 / (1 + 150 / 800.0F), construct.PixelInformation(5, 0)) << "two differ, by 50 and by 100";
}

/// The sums of one record by its definition: of values times information, then of information.
/// @param before  the images as they came; measuring raises zeros to 1, which the first image's records miss
std::vector<float> PlainSums(const Probe& before, const Probe& measured, std::size_t nImage, int nValue)
{
    std::vector<float> vfSums(measured.vpImages.size() + 1);
    const Bytes& values = (nImage == 0 ? before : measured).vpImages[nImage]->ppPlanes[0];
    for (std::size_t p = 0; p < values.size(); ++p) {
        if (values[p] != nValue)
            continue;
        for (std::size_t k = 0; k + 1 < vfSums.size(); ++k) {
            const float fProduct = measured.vpImages[k]->ppPlanes[0][p] * measured.pfInformation[p];
            vfSums[k] = vfSums[k] + fProduct;
        }
        vfSums.back() += measured.pfInformation[p];
    }
    return vfSums;
}

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

TEST(CollectStatistics, MeansByTheirDefinition)
{
    constexpr std::size_t IMAGES = 4;
    Probe before, measured;
    AddNoisySeries(before, IMAGES, 61, 2623);
    AddNoisySeries(measured, IMAGES, 61, 2623);
    const auto vRecords = measured.Collect(0);
    for (std::size_t p = 5; p < 2623; p += 97)
        EXPECT_EQ(0, measured.pfInformation[p]) << "pure blue takes no part";

    float fLargest = 0;
    const auto trust = [&](const std::vector<float>& vfSums, std::size_t nRecord) {
        return static_cast<float>(std::sqrt(vfSums.back()) * BiweightTable()[nRecord % 256]);
    };
    std::vector<std::vector<float>> vSums;
    for (std::size_t n = 0; n < vRecords.size(); ++n) {
        vSums.push_back(PlainSums(before, measured, n / 256, static_cast<int>(n % 256)));
        fLargest = std::max(fLargest, trust(vSums[n], n));
    }
    for (std::size_t n = 0; n < vRecords.size(); ++n) {
        SCOPED_TRACE(n);
        const SampleRecord& record = vRecords[n];
        ASSERT_EQ(vSums[n].back() > 0, record.pfValues != nullptr);
        if (!record.pfValues)
            continue;
        for (std::size_t k = 0; k < IMAGES; ++k)
            ASSERT_EQ(std::min(vSums[n][k] / vSums[n].back(), 255.0F), record.pfValues[k]);
        ASSERT_EQ(trust(vSums[n], n) / fLargest, record.fWeight);
    }
}

} // namespace
